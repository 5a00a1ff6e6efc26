#include "canvas/container/BodyQueue.h"

#include "canvas/container/BlockContainerView.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace tallowby {

BodyQueue::BodyQueue(QQuickItem &view)
    : m_view(view) {}

void BodyQueue::add(BlockContainerView &container) {
    m_waiting.emplace_back(&container);
    if (!m_view.window()) {
        make(m_waiting.size());
    } else if (!m_frames) {
        m_frames = connect(m_view.window(), &QQuickWindow::afterAnimating, this, &BodyQueue::makeSome);
        m_view.window()->update();
    }
}

void BodyQueue::makeWithin(const QRectF &visibleRect) {
    const auto seen = std::ranges::partition(
        m_waiting, [&](const auto &container) { return container && container->reachesInto(visibleRect); });
    make(std::size_t(seen.begin() - m_waiting.begin()));
}

void BodyQueue::makeSome() {
    make(std::min(m_waiting.size(), kBodiesPerFrame));
    if (m_waiting.empty()) {
        disconnect(m_frames);
        m_frames = {};
    } else {
        m_view.window()->update();
    }
}

void BodyQueue::make(std::size_t count) {
    const auto end = m_waiting.begin() + std::ptrdiff_t(count);
    const std::vector<QPointer<BlockContainerView>> next(m_waiting.begin(), end);
    m_waiting.erase(m_waiting.begin(), end);
    for (const auto &container : next) {
        if (container) {
            container->makeBody();
        }
    }
}

} // namespace tallowby
