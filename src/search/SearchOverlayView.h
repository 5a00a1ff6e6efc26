#pragma once

#include "canvas/view/InfiniteCanvasView.h"
#include "search/SearchResultsModel.h"
#include "sync/SearchViewModel.h"

#include <QPointer>
#include <QQuickItem>

#include <memory>

class QQmlEngine;

namespace tallowby {

class BlockStorage;
class EmbeddingService;
class NotificationCenter;

/// The panel over the canvas in which blocks are looked for: a field and what is found, chosen with the arrow keys and
/// Return, or with the pointer. There while the canvas says so. Owns the view model.
class SearchOverlayView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(tallowby::SearchResultsModel *results READ results CONSTANT)
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    /// Asked for at each showing.
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY isShownChanged)
    /// The result that Return takes; -1 for none.
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)
    /// The field that is typed into.
    Q_PROPERTY(QQuickItem *field READ field WRITE setField NOTIFY fieldChanged)
    /// What stands below the field in place of results; empty for nothing.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    /// The notice says what went wrong.
    Q_PROPERTY(bool hasFailed READ hasFailed NOTIFY noticeChanged)

public:
    struct Services {
        const BlockStorage &storage;
        const EmbeddingService &embeddings;
        NotificationCenter &notifications;
        Scheduler &scheduler;
    };

    explicit SearchOverlayView(QQuickItem *parent = nullptr);
    ~SearchOverlayView() override;

    /// Makes the overlay over a canvas, which owns it from then on.
    static SearchOverlayView *install(QQmlEngine &engine, InfiniteCanvasView &canvas, const Services &services);

    [[nodiscard]] SearchViewModel *viewModel() const { return m_viewModel.get(); }
    [[nodiscard]] QString searchText() const { return m_viewModel->searchText(); }
    void setSearchText(const QString &text) { m_viewModel->setSearchText(text); }
    [[nodiscard]] SearchResultsModel *results() const { return m_results.get(); }
    [[nodiscard]] bool isShown() const { return m_isShown; }
    [[nodiscard]] bool reducesMotion() const { return m_canvas && m_canvas->prefersReducedMotion(); }
    [[nodiscard]] int currentIndex() const { return m_currentIndex; }
    void setCurrentIndex(int index);
    [[nodiscard]] QQuickItem *field() const { return m_field; }
    void setField(QQuickItem *field);
    [[nodiscard]] QString notice() const;
    [[nodiscard]] bool hasFailed() const { return !m_viewModel->errorMessage().isEmpty(); }

    /// Goes to that result and puts the overlay away.
    Q_INVOKABLE void choose(int index);
    Q_INVOKABLE void clear();
    Q_INVOKABLE void dismiss();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void searchTextChanged();
    void isShownChanged();
    void currentIndexChanged();
    void fieldChanged();
    void noticeChanged();

private:
    void attach(InfiniteCanvasView &canvas, const Services &services);
    void follow();
    [[nodiscard]] bool handleKey(const QKeyEvent &event);
    void move(int by);

    QPointer<InfiniteCanvasView> m_canvas;
    std::unique_ptr<SearchViewModel> m_viewModel;
    std::unique_ptr<SearchResultsModel> m_results;
    NotificationCenter::Observation m_closing;
    QPointer<QQuickItem> m_field;
    bool m_isShown = false;
    int m_currentIndex = -1;
};

} // namespace tallowby
