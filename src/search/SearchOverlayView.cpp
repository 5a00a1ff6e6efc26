#include "search/SearchOverlayView.h"

#include "canvas/view/CanvasKeys.h"
#include "platform/AppEvents.h"

#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

/// Of the keys that go through a page of results.
constexpr int kPage = 6;

} // namespace

SearchOverlayView::SearchOverlayView(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
}

SearchOverlayView::~SearchOverlayView() = default;

SearchOverlayView *SearchOverlayView::install(QQmlEngine &engine, InfiniteCanvasView &canvas,
                                              const Services &services) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/Search/SearchOverlay.qml")));
    auto *overlay = qobject_cast<SearchOverlayView *>(component.beginCreate(engine.rootContext()));
    if (!overlay) {
        qFatal("The search could not be made: %s", qUtf8Printable(component.errorString()));
    }
    overlay->setParent(&canvas);
    overlay->attach(canvas, services);
    overlay->setParentItem(&canvas);
    component.completeCreate();
    return overlay;
}

void SearchOverlayView::attach(InfiniteCanvasView &canvas, const Services &services) {
    m_canvas = &canvas;
    m_viewModel = std::make_unique<SearchViewModel>(services.storage, services.embeddings, services.notifications,
                                                    services.scheduler);
    m_results = std::make_unique<SearchResultsModel>(*m_viewModel, canvas.blockKinds(), services.scheduler);
    // Never taken for garbage by the engine that shows it.
    QQmlEngine::setObjectOwnership(m_results.get(), QQmlEngine::CppOwnership);
    connect(&canvas, &InfiniteCanvasView::isSearchVisibleChanged, this, &SearchOverlayView::follow);
    connect(m_results.get(), &QAbstractItemModel::modelReset, this,
            [this] { setCurrentIndex(m_results->count() > 0 ? 0 : -1); });
    connect(m_results.get(), &QAbstractItemModel::rowsInserted, this,
            [this] { setCurrentIndex(std::max(0, m_currentIndex)); });
    connect(m_viewModel.get(), &SearchViewModel::searchTextChanged, this, &SearchOverlayView::searchTextChanged);
    connect(m_viewModel.get(), &SearchViewModel::resultsChanged, this, &SearchOverlayView::noticeChanged);
    connect(m_viewModel.get(), &SearchViewModel::isSearchingChanged, this, &SearchOverlayView::noticeChanged);
    connect(m_viewModel.get(), &SearchViewModel::errorMessageChanged, this, &SearchOverlayView::noticeChanged);
    m_closing = services.notifications.observe(events::flipClosed, [this](const Notification &) { dismiss(); });
}

void SearchOverlayView::setField(QQuickItem *field) {
    if (m_field != field) {
        m_field = field;
        field->installEventFilter(this);
        Q_EMIT fieldChanged();
    }
}

QString SearchOverlayView::notice() const {
    if (!m_viewModel->errorMessage().isEmpty()) {
        return m_viewModel->errorMessage();
    }
    const bool isNothing = !m_viewModel->answeredText().isEmpty() && m_results->count() == 0;
    return isNothing && !m_viewModel->isSearching() ? tr("Nothing found") : QString();
}

void SearchOverlayView::follow() {
    if (std::exchange(m_isShown, m_canvas->isSearchVisible()) == m_isShown) {
        return;
    }
    if (m_isShown) {
        m_viewModel->prepare();
        if (!m_viewModel->searchText().isEmpty()) {
            m_viewModel->searchAgain();
        }
    }
    Q_EMIT isShownChanged();
    if (m_isShown && m_field) {
        m_field->forceActiveFocus(Qt::ShortcutFocusReason);
        QMetaObject::invokeMethod(m_field, "selectAll");
    } else if (hasActiveFocus()) {
        m_canvas->forceActiveFocus();
    }
}

void SearchOverlayView::setCurrentIndex(int index) {
    if (m_currentIndex != index) {
        m_currentIndex = index;
        Q_EMIT currentIndexChanged();
    }
}

void SearchOverlayView::choose(int index) {
    if (index < 0 || index >= m_results->count()) {
        return;
    }
    // The rows may change while the canvas goes there.
    const SharedBlockFields chosen = m_viewModel->results()[std::size_t(index)];
    dismiss();
    m_viewModel->selectResult(*chosen);
}

void SearchOverlayView::clear() {
    m_viewModel->setSearchText({});
    if (m_field) {
        m_field->forceActiveFocus(Qt::OtherFocusReason);
    }
}

void SearchOverlayView::dismiss() {
    m_canvas->setIsSearchVisible(false);
}

bool SearchOverlayView::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress && watched == m_field) {
        return handleKey(*static_cast<QKeyEvent *>(event));
    }
    return QQuickItem::eventFilter(watched, event);
}

bool SearchOverlayView::handleKey(const QKeyEvent &event) {
    if (isCommandHeld(event.modifiers()) && isShortcutKey(event, Qt::Key_F)) {
        dismiss();
        return true;
    }
    switch (event.key()) {
    case Qt::Key_Escape:
        dismiss();
        return true;
    case Qt::Key_Down:
        move(1);
        return true;
    case Qt::Key_Up:
        move(-1);
        return true;
    case Qt::Key_PageDown:
        move(kPage);
        return true;
    case Qt::Key_PageUp:
        move(-kPage);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Whoever presses it does not wait for the pause after the last letter.
        m_viewModel->searchNow();
        choose(m_currentIndex);
        return true;
    default:
        return false;
    }
}

void SearchOverlayView::move(int by) {
    if (m_results->count() > 0) {
        setCurrentIndex(std::clamp(m_currentIndex + by, 0, m_results->count() - 1));
    }
}

} // namespace tallowby
