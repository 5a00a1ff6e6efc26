#pragma once

#include "model/Block.h"

#include <QAbstractListModel>
#include <qqmlintegration.h>

#include <vector>

namespace tallowby {

class BlockKindRegistry;
class Scheduler;
class SearchViewModel;

/// The results of the search as rows of a view; what a row shows is made when it comes into sight.
class SearchResultsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { TitleRole = Qt::UserRole, SnippetRole, AgeRole, SymbolRole, SpokenRole };

    SearchResultsModel(const SearchViewModel &viewModel, const BlockKindRegistry &kinds, const Scheduler &scheduler);

    [[nodiscard]] int count() const { return int(m_rows.size()); }
    [[nodiscard]] const BlockFields &at(int row) const { return *m_rows[std::size_t(row)]; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void follow();

    const SearchViewModel &m_viewModel;
    const BlockKindRegistry &m_kinds;
    const Scheduler &m_scheduler;
    std::vector<SharedBlockFields> m_rows;
    QString m_query;
};

} // namespace tallowby
