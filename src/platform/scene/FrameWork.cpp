#include "platform/scene/FrameWork.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <utility>

namespace tallowby {

FrameWork::FrameWork(QQuickItem &view, std::function<bool()> part)
    : m_view(view)
    , m_part(std::move(part)) {
    connect(&view, &QQuickItem::windowChanged, this, [this] {
        if (m_frames) {
            stop();
            begin();
        }
    });
}

void FrameWork::begin() {
    QQuickWindow *window = m_view.window();
    if (!window) {
        while (m_part()) {
        }
        return;
    }
    if (!m_frames) {
        m_frames = connect(window, &QQuickWindow::afterAnimating, this, &FrameWork::doPart);
    }
    window->update();
}

void FrameWork::doPart() {
    if (m_part()) {
        m_view.window()->update();
    } else {
        stop();
    }
}

void FrameWork::stop() {
    disconnect(m_frames);
    m_frames = {};
}

} // namespace tallowby
