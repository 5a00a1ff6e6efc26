#include "blocks/checklist/ChecklistBlockContent.h"

#include <QCursor>
#include <QMouseEvent>

#include <algorithm>

namespace tallowby {

namespace {

/// From the left edge.
constexpr double kGripRight = 14;
constexpr double kPlusLeft = 20;

} // namespace

ChecklistBlockContent::Hit ChecklistBlockContent::hit(QPointF point) const {
    if (point.y() < m_headerHeight) {
        return {Zone::title, kTitle};
    }
    if (point.y() >= m_addTop) {
        const QRectF words(QPointF(kPlusLeft - kAddMargin, m_addTop),
                           QPointF(m_addRight + kAddMargin, m_addTop + kAddHeight));
        return {words.contains(point) ? Zone::addition : Zone::nothing, kNone};
    }
    for (int row = 0; row < int(m_shown.size()); ++row) {
        const Row &place = m_shown[std::size_t(row)];
        if (point.y() < place.top + place.height) {
            const Zone zone = point.x() < kGripRight                            ? Zone::grip
                              : point.x() < kTextLeft - 2                       ? Zone::box
                              : point.x() >= width() - kTextRight + kRowPadding ? Zone::removal
                                                                                : Zone::text;
            return {zone, m_first + row};
        }
    }
    return {};
}

bool ChecklistBlockContent::click(QPointF point, Qt::KeyboardModifiers) {
    const Hit target = hit(point);
    if (target.zone == Zone::box) {
        toggle(target.item);
        return true;
    }
    if (target.zone == Zone::addition) {
        addItem();
        return true;
    }
    return false;
}

std::optional<Qt::CursorShape> ChecklistBlockContent::cursorAt(QPointF point, Qt::KeyboardModifiers) const {
    const Zone zone = hit(point).zone;
    return zone == Zone::box || zone == Zone::addition ? std::optional(Qt::PointingHandCursor) : std::nullopt;
}

void ChecklistBlockContent::placeCaret(QPointF point) {
    const Hit target = hit(point);
    if (target.item == kNone) {
        return;
    }
    if (!canOpen(target.item)) {
        // Text typed after this click must not go into the previous field.
        viewModel().endEditing();
        return;
    }
    edit(target.item, -1);
    FieldsBody::placeCaret(point);
}

void ChecklistBlockContent::mousePressEvent(QMouseEvent *event) {
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        event->ignore();
        return;
    }
    const Hit target = hit(event->position());
    switch (target.zone) {
    case Zone::title:
    case Zone::text:
        placeCaret(event->position());
        return;
    case Zone::grip:
        m_dragged = target.item;
        m_draggedOf = m_list.count();
        return;
    case Zone::box:
        toggle(target.item);
        return;
    case Zone::removal:
        removeItem(target.item);
        return;
    case Zone::addition:
        addItem();
        return;
    case Zone::nothing:
        return;
    }
}

void ChecklistBlockContent::mouseMoveEvent(QMouseEvent *event) {
    if (m_dragged >= 0 && m_draggedOf != m_list.count()) {
        // Keys have added or removed items: the grip may be that of another one.
        m_dragged = kNone;
    }
    if (m_dragged >= 0) {
        followPull(event->position());
    }
}

/// The row may be out of view: the wheel scrolls a long list under the pointer.
void ChecklistBlockContent::followPull(QPointF point) {
    const double y = std::clamp(point.y(), m_headerHeight, m_addTop - 1);
    const int to = hit({0, y}).item;
    // Rows of different heights would change places to and fro: not before the pointer is where the row will be.
    const Row &target = m_shown[std::size_t(to - m_first)];
    const double height = rowHeight(m_dragged);
    const bool isThere = to > m_dragged ? y > target.top + target.height - height : y < target.top + height;
    if (to != m_dragged && isThere) {
        moveItem(m_dragged, to);
        m_dragged = to;
        setHovered(to);
    }
}

void ChecklistBlockContent::mouseReleaseEvent(QMouseEvent *) {
    m_dragged = kNone;
}

void ChecklistBlockContent::setHovered(int item) {
    if (m_hovered != item) {
        m_hovered = item;
        layOut();
    }
}

void ChecklistBlockContent::hoverMoveEvent(QHoverEvent *event) {
    const Hit target = hit(event->position());
    setCursor(QCursor(cursorOf(target.zone)));
    setHovered(target.item);
}

Qt::CursorShape ChecklistBlockContent::cursorOf(Zone zone) {
    switch (zone) {
    case Zone::title:
    case Zone::text:
        return Qt::IBeamCursor;
    case Zone::grip:
        return Qt::OpenHandCursor;
    case Zone::box:
    case Zone::removal:
    case Zone::addition:
        return Qt::PointingHandCursor;
    case Zone::nothing:
        return Qt::ArrowCursor;
    }
    return Qt::ArrowCursor;
}

void ChecklistBlockContent::hoverLeaveEvent(QHoverEvent *) {
    setHovered(kNone);
}

void ChecklistBlockContent::wheelEvent(QWheelEvent *event) {
    event->setAccepted(takesWheel(*event));
    if (event->isAccepted()) {
        m_first += event->angleDelta().y() < 0 ? 3 : -3;
        layOut();
    }
}

} // namespace tallowby
