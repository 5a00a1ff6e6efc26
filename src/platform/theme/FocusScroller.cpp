#include "platform/theme/FocusScroller.h"

#include <QQuickWindow>

#include <algorithm>

namespace tallowby {

void FocusScroller::setPage(QQuickItem *page) {
    m_page = page;
    if (m_page) {
        connect(m_page, &QQuickItem::windowChanged, this, &FocusScroller::watch);
        watch();
    }
}

void FocusScroller::watch() {
    disconnect(m_watch);
    if (const QQuickWindow *window = m_page->window()) {
        m_watch = connect(window, &QQuickWindow::activeFocusItemChanged, this, &FocusScroller::follow);
    }
}

void FocusScroller::follow() {
    const QQuickItem *item = m_page->window()->activeFocusItem();
    const auto *content = m_page->property("contentItem").value<QQuickItem *>();
    if (!item || !content || !content->isAncestorOf(item)) {
        return;
    }
    const QRectF place = item->mapRectToItem(content, item->boundingRect()).adjusted(0, -m_margin, 0, m_margin);
    const double furthest = std::max(0.0, m_page->property("contentHeight").toDouble() - m_page->height());
    const double downTo = std::max(m_page->property("contentY").toDouble(), place.bottom() - m_page->height());
    m_page->setProperty("contentY", std::clamp(std::min(downTo, place.top()), 0.0, furthest));
}

} // namespace tallowby
