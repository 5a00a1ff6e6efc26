#include "search/SearchResultsModel.h"

#include "canvas/model/BlockKindRegistry.h"
#include "search/Excerpt.h"
#include "sync/SearchViewModel.h"

#include <algorithm>

namespace tallowby {

SearchResultsModel::SearchResultsModel(const SearchViewModel &viewModel, const BlockKindRegistry &kinds,
                                       const Scheduler &scheduler)
    : m_viewModel(viewModel)
    , m_kinds(kinds)
    , m_scheduler(scheduler) {
    connect(&viewModel, &SearchViewModel::resultsChanged, this, &SearchResultsModel::follow);
    connect(&Theme::shared(), &Theme::changed, this, [this] {
        if (!m_rows.empty()) {
            Q_EMIT dataChanged(index(0), index(count() - 1));
        }
    });
}

void SearchResultsModel::follow() {
    const auto &results = m_viewModel.results();
    const auto isSame = [](const SharedBlockFields &a, const SharedBlockFields &b) {
        return a.constData() == b.constData();
    };
    const bool isContinued = m_query == m_viewModel.answeredText() && results.size() > m_rows.size() &&
                             std::equal(m_rows.begin(), m_rows.end(), results.begin(), isSame);
    if (isContinued) {
        // What the backend adds leaves the choice where it is.
        beginInsertRows({}, count(), int(results.size()) - 1);
        m_rows = results;
        endInsertRows();
    } else {
        beginResetModel();
        m_rows = results;
        m_query = m_viewModel.answeredText();
        endResetModel();
    }
    Q_EMIT countChanged();
}

int SearchResultsModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SearchResultsModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid() || index.row() >= count()) {
        return {};
    }
    const BlockFields &fields = at(index.row());
    const BlockKind &kind = m_kinds.kind(fields.blockType);
    switch (role) {
    case TitleRole:
        return excerptOf(fields, m_query, kind.name, Theme::shared().accent()).title;
    case SnippetRole:
        return excerptOf(fields, m_query, kind.name, Theme::shared().accent()).snippet;
    case SpokenRole:
        return QString(kind.name + u": " + excerptOf(fields, m_query, kind.name, Theme::shared().accent()).plain);
    case AgeRole:
        return ageInWords(fields.updatedAt, m_scheduler.now());
    case SymbolRole:
        return kind.symbol;
    default:
        return {};
    }
}

QHash<int, QByteArray> SearchResultsModel::roleNames() const {
    return {{TitleRole, QByteArrayLiteral("title")},
            {SnippetRole, QByteArrayLiteral("snippet")},
            {AgeRole, QByteArrayLiteral("age")},
            {SymbolRole, QByteArrayLiteral("symbol")},
            {SpokenRole, QByteArrayLiteral("spoken")}};
}

} // namespace tallowby
