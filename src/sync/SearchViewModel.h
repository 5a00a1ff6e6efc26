#pragma once

#include "model/Block.h"
#include "platform/Scheduler.h"
#include "sync/SearchIndex.h"

#include <QObject>
#include <QPointer>

#include <QCoroTask>

#include <vector>

namespace tallowby {

class BlockStorage;
class EmbeddingService;
class NotificationCenter;
class SyncEngine;

/// Answers what is typed into the search field: at once with the blocks here that contain the text, then with those
/// that the backend finds by their meaning. Main thread only.
class SearchViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)

public:
    /// From the last letter to the search.
    static constexpr std::chrono::milliseconds kDebounce{500};
    /// How many blocks the backend is asked for.
    static constexpr int kSemanticLimit = 10;

    /// All of these must outlive the view model.
    SearchViewModel(const BlockStorage &storage, const EmbeddingService &embeddings, NotificationCenter &notifications,
                    Scheduler &scheduler);

    /// None until there is one; then only blocks that are here are found.
    void setSyncEngine(SyncEngine *engine);

    [[nodiscard]] const QString &searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    /// Those that contain the text first, in the storage's order, each block once.
    [[nodiscard]] const std::vector<SharedBlockFields> &results() const { return m_results; }
    /// The text that `results` answer.
    [[nodiscard]] const QString &answeredText() const { return m_answeredText; }
    [[nodiscard]] bool isSearching() const { return m_isSearching; }
    [[nodiscard]] const QString &errorMessage() const { return m_errorMessage; }

    /// Reads blocks bit by bit, so that a search finds them read.
    void prepare();
    /// Searches without waiting for more letters, when the text has changed since the last search.
    void searchNow();
    /// Searches for what is in the field once more, since the blocks may have changed.
    void searchAgain();
    /// A search that comes after it makes it worth nothing: then what the backend answers to it is dropped.
    QCoro::Task<> performSearch(QString query);
    /// Asks the canvas to go there.
    void selectResult(const BlockFields &result);

Q_SIGNALS:
    void searchTextChanged();
    void resultsChanged();
    void isSearchingChanged();
    void errorMessageChanged();

private:
    void handle(const QString &text);
    void setResults(std::vector<SharedBlockFields> results, const QString &query);
    void setIsSearching(bool isSearching);
    void setErrorMessage(const QString &message);

    const EmbeddingService &m_embeddings;
    NotificationCenter &m_notifications;
    Scheduler &m_scheduler;
    QPointer<SyncEngine> m_syncEngine;
    SearchIndex m_index;
    QString m_searchText;
    QString m_handledText;
    QString m_answeredText;
    std::vector<SharedBlockFields> m_results;
    bool m_isSearching = false;
    QString m_errorMessage;
    /// Counts the searches.
    int m_search = 0;
    ScheduledCall m_debounce;
    ScheduledCall m_preparing;
};

} // namespace tallowby
