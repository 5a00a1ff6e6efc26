#include "sync/SearchViewModel.h"

#include "platform/AppEvents.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "sync/EmbeddingService.h"
#include "sync/SyncEngine.h"

#include <algorithm>

namespace tallowby {

namespace {

/// Read in one turn of the event loop: a few milliseconds.
constexpr std::size_t kBlocksATurn = 2000;

} // namespace

SearchViewModel::SearchViewModel(const BlockStorage &storage, const EmbeddingService &embeddings,
                                 NotificationCenter &notifications, Scheduler &scheduler)
    : m_embeddings(embeddings)
    , m_notifications(notifications)
    , m_scheduler(scheduler)
    , m_index(storage) {}

void SearchViewModel::setSyncEngine(SyncEngine *engine) {
    m_syncEngine = engine;
}

void SearchViewModel::setSearchText(const QString &text) {
    if (m_searchText == text) {
        return;
    }
    m_searchText = text;
    Q_EMIT searchTextChanged();
    if (text.isEmpty()) {
        m_debounce.cancel();
        handle(text);
    } else {
        m_debounce = m_scheduler.after(kDebounce, [this] { searchNow(); });
    }
}

void SearchViewModel::searchNow() {
    m_debounce.cancel();
    if (m_handledText != m_searchText) {
        handle(m_searchText);
    }
}

void SearchViewModel::searchAgain() {
    m_debounce.cancel();
    handle(m_searchText);
}

void SearchViewModel::handle(const QString &text) {
    m_handledText = text;
    if (text.isEmpty()) {
        ++m_search;
        setIsSearching(false);
        setErrorMessage({});
        setResults({}, text);
        return;
    }
    performSearch(text);
}

void SearchViewModel::prepare() {
    m_preparing = m_scheduler.after(std::chrono::milliseconds(0), [this] {
        if (m_index.prepare(kBlocksATurn)) {
            prepare();
        }
    });
}

QCoro::Task<> SearchViewModel::performSearch(QString query) {
    const int search = ++m_search;
    setIsSearching(true);
    setErrorMessage({});
    m_preparing.cancel();
    setResults(m_index.find(query), query);

    SyncOutcome<std::vector<BlockDTO>> outcome = SyncFailure{description(SyncError::authenticationRequired)};
    const QPointer<SearchViewModel> self(this);
    if (m_syncEngine) {
        auto found = co_await m_syncEngine->semanticSearch(m_embeddings.embedding(query), kSemanticLimit);
        outcome = std::move(found);
    }
    if (!self || search != m_search) {
        co_return;
    }
    if (auto *rows = std::get_if<std::vector<BlockDTO>>(&outcome)) {
        std::vector<SharedBlockFields> results = m_results;
        for (BlockDTO &row : *rows) {
            const auto isSame = [&row](const SharedBlockFields &known) { return known->id == row.id; };
            if (std::ranges::none_of(results, isSame)) {
                results.push_back(std::move(row).toFields());
            }
        }
        if (results.size() != m_results.size()) {
            setResults(std::move(results), query);
        }
    } else {
        const auto *failure = std::get_if<SyncFailure>(&outcome);
        logLine(QString(u"[SearchViewModel] Semantic search failed, staying with local results: " +
                        (failure ? failure->description : description(SyncError::networkError))));
        if (m_results.empty()) {
            setErrorMessage(tr("Search failed. Please try again."));
        }
    }
    setIsSearching(false);
}

void SearchViewModel::selectResult(const BlockFields &result) {
    m_notifications.post(
        events::jumpToBlock,
        {{events::jumpXKey, result.xPosition}, {events::jumpYKey, result.yPosition}, {events::jumpIdKey, result.id}});
}

void SearchViewModel::setResults(std::vector<SharedBlockFields> results, const QString &query) {
    m_results = std::move(results);
    m_answeredText = query;
    Q_EMIT resultsChanged();
}

void SearchViewModel::setIsSearching(bool isSearching) {
    if (m_isSearching != isSearching) {
        m_isSearching = isSearching;
        Q_EMIT isSearchingChanged();
    }
}

void SearchViewModel::setErrorMessage(const QString &message) {
    if (m_errorMessage != message) {
        m_errorMessage = message;
        Q_EMIT errorMessageChanged();
    }
}

} // namespace tallowby
