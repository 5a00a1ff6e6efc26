#include "canvas/view/InfiniteCanvasView.h"

#include "canvas/container/BlockContainerView.h"
#include "canvas/view/ImagePicker.h"
#include "canvas/view/typing/CaretFollower.h"
#include "platform/AppEvents.h"
#include "platform/desktop/MotionPreference.h"

#include <QQuickWindow>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

/// Between the edge of the view and a block that is brought into it.
constexpr double kViewMargin = 40;
/// Since the last change of the zoom.
constexpr std::chrono::milliseconds kZoomSettling{120};
/// Bodies that go from lines to text with one frame.
constexpr std::size_t kLegiblePerFrame = 24;

} // namespace

InfiniteCanvasView::InfiniteCanvasView(QQuickItem *parent)
    : QQuickItem(parent)
    , m_caretFollower(new CaretFollower(*this)) {
    setFlag(ItemIsFocusScope);
    setFlag(ItemAcceptsInputMethod);
    setFlag(ItemAcceptsDrops);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::MiddleButton | Qt::RightButton);
    setAcceptTouchEvents(true);
    setAcceptHoverEvents(true);
    setFocus(true);
}

InfiniteCanvasView::~InfiniteCanvasView() {
    // Containers go with the children, after this object's own members.
    for (BlockContainerView *container : std::as_const(m_containers)) {
        container->setCanvas(nullptr);
    }
}

void InfiniteCanvasView::attach(CanvasViewModel &viewModel, const BlockKindRegistry &blockKinds,
                                NotificationCenter &notifications) {
    m_viewModel = &viewModel;
    m_blockKinds = &blockKinds;
    m_notifications = &notifications;
    m_inputMethod.emplace(viewModel.scheduler());
    connect(&viewModel, &CanvasViewModel::editingAboutToEnd, this, &InfiniteCanvasView::finishComposing);
    m_turn = notifications.observe(events::flipReversing, [this](const Notification &) { handleTurningAway(); });
    connect(viewModel.visibleBlocksModel(), &VisibleBlocksModel::changed, &m_containerRows, &ContainerRows::update);
    connect(&viewModel, &CanvasViewModel::focusedBlockIdChanged, &m_containerRows, &ContainerRows::update);
    connect(&viewModel, &CanvasViewModel::focusedBlockIdChanged, this, [this] {
        // A new block is open for editing whatever its kind is; one that has no editor would swallow every key.
        if (const BlockPtr block = m_viewModel->focusedBlock(); block && !isEditable(*block)) {
            m_viewModel->endEditing();
            return;
        }
        if (!m_viewModel->isAnyBlockEditing()) {
            m_keepsInputMethod = false;
            if (hasActiveFocus()) {
                forceActiveFocus();
            }
        }
    });
    // A tool that is put away in the middle of its use leaves nothing behind.
    connect(&viewModel, &CanvasViewModel::activeToolChanged, this, [this] {
        cancelGesture();
        if (m_viewModel->activeTool().kind() != CanvasTool::Kind::select) {
            m_viewModel->endEditing();
        }
    });
    connect(&viewModel, &CanvasViewModel::cursorResetRequested, this, [this] { setCursor(Qt::ArrowCursor); });
    const auto forgetLeadingKeys = [this] { m_leadingKeys.clear(); };
    connect(this, &InfiniteCanvasView::isGestureRunningChanged, forgetLeadingKeys);
    connect(this, &InfiniteCanvasView::contextMenuRequested, forgetLeadingKeys);
    connect(&viewModel, &CanvasViewModel::cullingRequested, this, &InfiniteCanvasView::cull);
    viewportMoved();
    // Of the blocks that were there before, none may have become visible or hidden.
    m_containerRows.update();
}

bool InfiniteCanvasView::prefersReducedMotion() const {
    return m_motionPreference && m_motionPreference->prefersReducedMotion();
}

std::optional<HandleLayout> InfiniteCanvasView::handles() {
    const bool isSelecting = m_viewModel->activeTool().kind() == CanvasTool::Kind::select;
    return isSelecting && m_draggedBlocks.empty() ? SelectTool::handles(*this) : std::nullopt;
}

QRectF InfiniteCanvasView::marquee() const {
    return m_marquee ? QRectF(m_viewport.toScreen(m_marquee->topLeft()), m_viewport.toScreen(m_marquee->bottomRight()))
                     : QRectF();
}

void InfiniteCanvasView::setIsHelpVisible(bool isVisible) {
    if (m_isHelpVisible != isVisible) {
        m_isHelpVisible = isVisible;
        Q_EMIT isHelpVisibleChanged();
    }
}

void InfiniteCanvasView::setIsSearchVisible(bool isVisible) {
    if (m_isSearchVisible != isVisible) {
        m_isSearchVisible = isVisible;
        Q_EMIT isSearchVisibleChanged();
    }
}

QPointF InfiniteCanvasView::origin() const {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QPointF exact = m_viewport.origin() * ratio;
    return QPointF(std::round(exact.x()), std::round(exact.y())) / ratio;
}

void InfiniteCanvasView::setSelectionOutline(QQmlComponent *component) {
    if (m_selectionOutline != component) {
        m_selectionOutline = component;
        Q_EMIT selectionOutlineChanged();
    }
}

void InfiniteCanvasView::setCloseShortcut(const QString &text) {
    if (m_closeShortcut != text) {
        m_closeShortcut = text;
        Q_EMIT closeShortcutChanged();
    }
}

void InfiniteCanvasView::zoomIn() {
    if (m_viewport.setScale(m_viewport.scale() * Viewport::kZoomStep)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::zoomOut() {
    if (m_viewport.setScale(m_viewport.scale() / Viewport::kZoomStep)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::resetZoom() {
    if (m_viewport.setScale(1.0)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::jumpTo(QPointF offset) {
    panBy(offset - m_viewport.offset());
}

void InfiniteCanvasView::panBy(QPointF screenDelta) {
    if (m_viewport.pan(screenDelta)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::requestClose() {
    m_notifications->post(events::canvasCloseRequested);
}

void InfiniteCanvasView::viewportMoved() {
    if (m_viewport.needsCulling()) {
        cull();
    }
    m_containerRows.viewMoved();
    if (std::exchange(m_shownZoom, m_viewport.scale()) != m_viewport.scale()) {
        bool isLegibilityDue = false;
        forEachBody([this, &isLegibilityDue](BlockBody &body) {
            body.setZoom(m_viewport.scale());
            isLegibilityDue = isLegibilityDue || body.isLegibilityDue();
        });
        if (isLegibilityDue) {
            m_legibilityWork.begin();
        }
        m_zoomSettling = m_viewModel->scheduler().after(
            kZoomSettling, [this] { forEachBody([](BlockBody &body) { body.settleZoom(); }); });
    }
    Q_EMIT viewportChanged();
}

void InfiniteCanvasView::forEachBody(const std::function<void(BlockBody &)> &act) const {
    for (const BlockContainerView *container : m_containers) {
        act(*container->body());
    }
}

bool InfiniteCanvasView::makeSomeLegible() {
    std::size_t left = kLegiblePerFrame;
    for (const BlockPtr &block : m_containerRows.model()->blocks()) {
        BlockBody *body = bodyOf(block.get());
        if (!body || !body->isLegibilityDue()) {
            continue;
        }
        if (left == 0) {
            return true;
        }
        --left;
        body->updateIsLegible();
    }
    return false;
}

void InfiniteCanvasView::cull() {
    m_viewModel->updateVisibleBlocks(m_viewport.visibleRect(), m_viewport.scale());
    m_viewport.noteCulled();
}

void InfiniteCanvasView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (m_viewport.setSize(newGeometry.size())) {
        viewportMoved();
    }
}

void InfiniteCanvasView::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemSceneChange && data.window) {
        data.window->installEventFilter(this);
    }
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        Q_EMIT viewportChanged();
    }
}

QQmlComponent &InfiniteCanvasView::bodyComponent(BlockType type) {
    auto &component = m_bodyComponents.at(std::size_t(type));
    if (!component) {
        component = std::make_unique<QQmlComponent>(qmlEngine(this), m_blockKinds->kind(type).body);
    }
    return *component;
}

void InfiniteCanvasView::rememberContainer(BlockContainerView &container) {
    m_containers.insert(container.block(), &container);
}

std::optional<QPointF> InfiniteCanvasView::dragOffsetOf(const Block &block) const {
    const auto isBlock = [&block](const BlockPtr &dragged) { return dragged.get() == &block; };
    return std::ranges::any_of(m_draggedBlocks, isBlock) ? std::optional(m_dragOffset) : std::nullopt;
}

void InfiniteCanvasView::showDrag(const std::vector<BlockPtr> &blocks, QPointF dragOffset) {
    const std::vector<BlockPtr> before = std::exchange(m_draggedBlocks, blocks);
    m_dragOffset = dragOffset;
    const auto show = [this](const std::vector<BlockPtr> &shown, std::optional<QPointF> offset) {
        for (const BlockPtr &block : shown) {
            if (BlockContainerView *container = containerOf(block.get())) {
                container->showDrag(offset);
            }
        }
    };
    if (blocks != before) {
        show(before, std::nullopt);
    }
    show(blocks, dragOffset);
    m_viewModel->showShifted(blocks, dragOffset);
    Q_EMIT selectionMoved();
}

void InfiniteCanvasView::blockMoved(const Block &block) {
    if (block.isSelected()) {
        Q_EMIT selectionMoved();
    }
}

void InfiniteCanvasView::showMarquee(std::optional<QRectF> marquee) {
    m_marquee = marquee;
    Q_EMIT marqueeChanged();
}

bool InfiniteCanvasView::isEditable(const Block &block) const {
    return m_blockKinds->kind(block.blockType()).isEditable;
}

bool InfiniteCanvasView::opensAtFirstClick(const Block &block) const {
    return m_blockKinds->kind(block.blockType()).opensAtFirstClick;
}

void InfiniteCanvasView::edit(const BlockPtr &block, QPointF screenPoint) {
    m_viewModel->beginEditing(block);
    if (BlockBody *body = bodyOf(block.get()); body && body->isEditing()) {
        body->placeCaret(body->mapFromItem(this, screenPoint));
    }
}

bool InfiniteCanvasView::clickBody(const Block &block, const PointerInput &input) {
    BlockBody *body = bodyOf(&block);
    return body && !body->isEditing() && body->click(body->mapFromItem(this, input.screen), input.modifiers);
}

std::optional<Qt::CursorShape> InfiniteCanvasView::bodyCursor(const Block &block, const PointerInput &input) const {
    const BlockBody *body = bodyOf(&block);
    if (!body || body->isEditing()) {
        return std::nullopt;
    }
    return body->cursorAt(body->mapFromItem(this, input.screen), input.modifiers);
}

void InfiniteCanvasView::canvasClicked() {
    m_notifications->post(events::deselectAllBlocks);
}

bool InfiniteCanvasView::activate(const BlockPtr &block) {
    BlockBody *body = bodyOf(block.get());
    return body && body->activate();
}

ImagePicker &InfiniteCanvasView::imagePicker() {
    if (!m_imagePicker) {
        m_imagePicker = std::make_unique<ImagePicker>(*this);
    }
    return *m_imagePicker;
}

void InfiniteCanvasView::pickImage(QPointF canvasPoint) {
    pickImage([this, canvasPoint](const QUrl &file) { m_viewModel->insertFiles({file}, canvasPoint); });
}

void InfiniteCanvasView::pickImage(const std::function<void(const QUrl &)> &chosen) {
    imagePicker().open(chosen);
}

void InfiniteCanvasView::pickPlace(const QString &fileName, const std::function<void(const QUrl &)> &chosen) {
    imagePicker().openToSave(fileName, chosen);
}

std::vector<MenuEntry> InfiniteCanvasView::menuEntriesOf(const Block &block) const {
    BlockBody *body = bodyOf(&block);
    return body ? body->menuEntries() : std::vector<MenuEntry>();
}

void InfiniteCanvasView::bringIntoView(const Block &block) {
    const QRectF room = QRectF({}, size()).adjusted(kViewMargin, kViewMargin, -kViewMargin, -kViewMargin);
    const QRectF frame(m_viewport.toScreen({block.xPosition(), block.yPosition()}),
                       QSizeF(block.width(), block.height()) * m_viewport.scale());
    // The beginning counts where the whole does not fit.
    const double dx = std::max(std::min(0.0, room.right() - frame.right()), room.left() - frame.left());
    const double dy = std::max(std::min(0.0, room.bottom() - frame.bottom()), room.top() - frame.top());
    panBy({dx, dy});
}

void InfiniteCanvasView::forgetContainer(BlockContainerView &container) {
    // A block that came back into view may have a new container already.
    if (containerOf(container.block()) == &container) {
        m_containers.remove(container.block());
    }
}

BlockContainerView *InfiniteCanvasView::containerOf(const Block *block) const {
    return m_containers.value(block);
}

BlockBody *InfiniteCanvasView::bodyOf(const Block *block) const {
    const BlockContainerView *container = containerOf(block);
    return container ? container->body() : nullptr;
}

} // namespace tallowby
