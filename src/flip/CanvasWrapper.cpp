#include "flip/CanvasWrapper.h"

namespace tallowby {

CanvasWrapper::~CanvasWrapper() {
    setView(nullptr);
}

void CanvasWrapper::setView(QQuickItem *view) {
    if (m_view == view) {
        return;
    }
    QQuickItem *const previous = m_view;
    m_view = view;
    if (previous && previous->parentItem() == this) {
        previous->setParentItem(nullptr);
    }
    if (view) {
        view->setParentItem(this);
        view->setPosition({});
        view->setSize(size());
    }
    Q_EMIT viewChanged();
}

void CanvasWrapper::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (m_view) {
        m_view->setSize(newGeometry.size());
    }
}

void CanvasWrapper::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemChildRemovedChange && data.item == m_view) {
        m_view = nullptr;
        Q_EMIT viewChanged();
    }
    QQuickItem::itemChange(change, data);
}

} // namespace tallowby
