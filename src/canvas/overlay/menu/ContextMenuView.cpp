#include "canvas/overlay/menu/ContextMenuView.h"

#include "canvas/overlay/menu/AddContentMenuItems.h"
#include "canvas/overlay/menu/BlockMenuItems.h"

#include <QKeyEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

/// Between a menu and the edge of the view, in points.
constexpr double kEdge = 8;

/// From `after` on where there is room, else up to `before`, else moved from `after` as far as it has to be.
double placedAlong(double length, double before, double after, double room) {
    const double last = room - kEdge - length;
    const bool turnsBack = after > last && before - length >= kEdge;
    return std::max(kEdge, std::min(turnsBack ? before - length : after, last));
}

/// A row that was reached is dropped with its level when the event is done, not under the handler that it is in.
void discard(MenuEntriesModel *level) {
    if (level) {
        level->deleteLater();
    }
}

} // namespace

ContextMenuView::ContextMenuView(QQuickItem *parent)
    : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptHoverEvents(true);
    setVisible(false);
}

void ContextMenuView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas != canvas) {
        m_canvas = canvas;
        if (canvas) {
            connect(canvas, &InfiniteCanvasView::contextMenuRequested, this, &ContextMenuView::openFor);
            connect(canvas, &InfiniteCanvasView::turningAway, this, &ContextMenuView::close);
        }
        Q_EMIT canvasChanged();
    }
}

void ContextMenuView::openFor(QPointF point, Block *block) {
    CanvasViewModel &model = m_canvas->viewModel();
    const auto &blocks = model.blocks();
    const auto found = std::ranges::find(blocks, block, &BlockPtr::get);
    if (found != blocks.end()) {
        open(
            point,
            BlockMenuItems(model, m_canvas->blockKinds(), BlockPtr(*found), m_canvas->menuEntriesOf(*block)).entries());
    } else {
        const auto pickImage = [canvas = m_canvas](QPointF at) { canvas->pickImage(at); };
        open(point,
             AddContentMenuItems(model, m_canvas->blockKinds(), model.rightClickCursorPos(), pickImage).entries());
    }
}

void ContextMenuView::open(QPointF point, std::vector<MenuEntry> entries) {
    discard(std::exchange(m_children, nullptr));
    discard(std::exchange(m_entries, new MenuEntriesModel(std::move(entries), this)));
    m_point = point;
    m_pointer = point;
    setVisible(true);
    forceActiveFocus(Qt::PopupFocusReason);
    Q_EMIT levelsChanged();
}

void ContextMenuView::close() {
    if (!m_entries) {
        return;
    }
    discard(std::exchange(m_children, nullptr));
    discard(std::exchange(m_entries, nullptr));
    setVisible(false);
    const bool hadKeyboard = hasActiveFocus();
    setFocus(false);
    if (hadKeyboard) {
        m_canvas->forceActiveFocus(Qt::PopupFocusReason);
    }
    Q_EMIT levelsChanged();
}

void ContextMenuView::hover(MenuEntriesModel *level, int row, QPointF point) {
    const QPointF moved = point - std::exchange(m_pointer, point);
    // On its way to the children the pointer crosses corners of other rows.
    const bool isOnItsWay = level == m_entries && m_children && std::abs(moved.x()) > std::abs(moved.y());
    if (isOnItsWay || level->current() == row) {
        return;
    }
    level->setCurrent(row);
    if (level == m_entries) {
        closeChildren();
        openChildren();
    }
}

void ContextMenuView::choose(MenuEntriesModel *level, int row) {
    level->setCurrent(row);
    const MenuEntry *entry = level->currentEntry();
    if (!entry) {
        return;
    }
    if (!entry->children.empty()) {
        openChildren();
        return;
    }
    // After closing: what is done may open an editor, which is to keep the keyboard.
    const auto action = entry->action;
    close();
    action();
}

void ContextMenuView::openChildren() {
    const MenuEntry *entry = m_entries->currentEntry();
    if (!m_children && entry && !entry->children.empty()) {
        m_children = new MenuEntriesModel(entry->children, this);
        Q_EMIT levelsChanged();
    }
}

void ContextMenuView::enterChildren() {
    openChildren();
    if (m_children) {
        m_children->setCurrent(0);
    }
}

void ContextMenuView::closeChildren() {
    if (MenuEntriesModel *children = std::exchange(m_children, nullptr)) {
        discard(children);
        Q_EMIT levelsChanged();
    }
}

QPointF ContextMenuView::placed(QSizeF panel, const QRectF &aside, QSizeF room) {
    return {placedAlong(panel.width(), aside.left(), aside.right(), room.width()),
            placedAlong(panel.height(), aside.bottom(), aside.top(), room.height())};
}

void ContextMenuView::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    const bool isGone =
        (change == ItemVisibleHasChanged && !data.boolValue) || (change == ItemSceneChange && !data.window);
    if (isGone) {
        close();
    }
}

void ContextMenuView::keyPressEvent(QKeyEvent *event) {
    // Nothing goes on to the canvas: a letter would make a text there.
    event->accept();
    if (m_entries) {
        handleKey(*event);
    }
}

void ContextMenuView::handleKey(const QKeyEvent &event) {
    // The children have the keys from when one of them is current.
    const bool isInChildren = m_children && m_children->current() >= 0;
    MenuEntriesModel *level = isInChildren ? m_children : m_entries;
    switch (event.key()) {
    case Qt::Key_Escape:
        isInChildren ? closeChildren() : close();
        break;
    case Qt::Key_Down:
    case Qt::Key_Up:
        level->moveCurrent(event.key() == Qt::Key_Down ? 1 : -1);
        break;
    case Qt::Key_Home:
    case Qt::Key_End:
        level->setCurrent(event.key() == Qt::Key_Home ? 0 : level->rowCount() - 1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (const MenuEntry *entry = level->currentEntry(); entry && entry->children.empty()) {
            choose(level, level->current());
        } else {
            enterChildren();
        }
        break;
    case Qt::Key_Right:
        enterChildren();
        break;
    case Qt::Key_Left:
        closeChildren();
        break;
    default:
        if (!event.text().isEmpty() && event.text().at(0).isPrint()) {
            level->jumpTo(event.text());
        }
        break;
    }
    if (m_children && m_children->current() < 0) {
        closeChildren();
    }
}

void ContextMenuView::mousePressEvent(QMouseEvent *event) {
    close();
    // A right press opens the next menu where it is.
    event->setAccepted(event->button() != Qt::RightButton);
}

void ContextMenuView::wheelEvent(QWheelEvent *event) {
    event->accept();
}

} // namespace tallowby
