#include "flip/scene/FlipSceneView.h"

#include "flip/scene/HexColor.h"
#include "flip/scene/Picture.h"
#include "platform/Log.h"
#include "platform/scene/SceneGraph.h"

#include <QQuickItemGrabResult>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tallowby {

namespace {

constexpr double kOpenAngle = std::numbers::pi;

/// In frames a second; a screen that does not know its rate says 0.
constexpr double kSlowestRefresh = 60;
constexpr double kFastestRefresh = 144;

constexpr double kSpringMass = 1.0;
constexpr double kSpringStiffness = 220.0;
constexpr double kSpringDamping = 24.0;

/// Darkest a little before the middle: the spring stands edge-on by then.
constexpr KeyframeCurve::Keyframe kShadowPulse[] = {{0, 0}, {0.45, 0.18}, {1, 0}};

} // namespace

FlipSceneView::FlipSceneView(QQuickItem *parent)
    : QQuickItem(parent)
    , m_spring(kSpringMass, kSpringStiffness, kSpringDamping)
    , m_shadowPulse({std::begin(kShadowPulse), std::end(kShadowPulse)}) {}

bool FlipSceneView::usesShaders() {
    return sceneGraphHasShaders();
}

QColor FlipSceneView::creamColor() {
    static const QColor color = colorFromHex(u"F9F8F2");
    return color;
}

QColor FlipSceneView::inkColor() {
    static const QColor color = colorFromHex(u"1F1E1A");
    return color;
}

void FlipSceneView::setFrontFace(QQuickItem *face) {
    m_frontFace = face;
    m_frontTransform.appendToItem(face);
    showRest();
    Q_EMIT facesChanged();
}

void FlipSceneView::setBackFace(QQuickItem *face) {
    m_backFace = face;
    m_backTransform.appendToItem(face);
    showRest();
    Q_EMIT facesChanged();
}

void FlipSceneView::setBackContent(const QImage &image) {
    m_backImage = image;
    m_backView = nullptr;
    m_hasBackView = false;
    m_pictureSource = nullptr;
    Q_EMIT pictureChanged();
}

void FlipSceneView::setBackContent(QQuickItem *view) {
    if (view->size().isEmpty()) {
        return;
    }
    m_backImage = {};
    m_backView = view;
    m_hasBackView = true;
    Q_EMIT pictureChanged();
}

void FlipSceneView::releasePicture() {
    if (m_pictureSource) {
        m_pictureSource = nullptr;
        m_viewImage = {};
        Q_EMIT pictureChanged();
    }
}

void FlipSceneView::rehearse(QQuickItem *view) {
    setBackContent(view);
    takePicture();
    for (QQuickItem *const face : {m_frontFace.data(), m_backFace.data()}) {
        if (face) {
            face->setVisible(true);
        }
    }
}

void FlipSceneView::endRehearsal() {
    m_backView = nullptr;
    m_hasBackView = false;
    releasePicture();
    showRest();
}

void FlipSceneView::flip(std::function<void()> completion) {
    if (isAnimating()) {
        return;
    }
    if (!hasBackContent()) {
        if (completion) {
            completion();
        }
        return;
    }
    m_completionBlock = std::move(completion);
    m_turn = Turn{
        .style = m_style,
        .duration = m_style == TurnStyle::rotation ? m_spring.settlingDuration() : kCrossFadeDuration,
        .lastFrame = m_scheduler->monotonic(),
    };
    takePicture();
    showTurn(Scheduler::Duration::zero());
    armFrameWatch(m_turn->duration + kFrameGrace);
    if (QQuickWindow *const shown = window()) {
        m_frameSignals = {
            connect(shown, &QQuickWindow::afterAnimating, this, &FlipSceneView::prepareFrame),
            // Comes from the thread that renders.
            connect(shown, &QQuickWindow::frameSwapped, this, &FlipSceneView::noteFramePresented),
        };
    }
    Q_EMIT isAnimatingChanged();
    requestFrame();
}

void FlipSceneView::cleanup() {
    const bool wasOpen = std::exchange(m_isOpen, false);
    const bool wasAnimating = isAnimating();
    stopTurn();
    showRest();
    m_backView = nullptr;
    m_hasBackView = false;
    m_backImage = {};
    m_viewImage = {};
    m_pictureSource = nullptr;
    Q_EMIT pictureChanged();
    if (wasOpen) {
        Q_EMIT isOpenChanged();
    }
    if (wasAnimating) {
        Q_EMIT isAnimatingChanged();
    }
    logLine(u"[FlipSceneView] 🧹 Resources cleaned up and GPU memory released");
}

void FlipSceneView::prepareFrame() {
    if (m_turn && (usesShaders() || !m_turn->start)) {
        advanceFrame();
    }
}

void FlipSceneView::advanceFrame() {
    if (!m_turn) {
        return;
    }
    const Scheduler::Duration now = m_scheduler->monotonic();
    m_turn->lastFrame = now;
    if (!m_turn->start) {
        m_turn->isFirstFramePrepared = true;
        return;
    }
    // The end is reported one frame after it was prepared, so that it has been seen before anything takes its place.
    if (m_turn->isEndPrepared) {
        endTurn();
        return;
    }
    const Scheduler::Duration elapsed = now - *m_turn->start;
    m_turn->isEndPrepared = elapsed >= m_turn->duration;
    showTurn(std::min(elapsed, m_turn->duration));
    requestFrame();
}

void FlipSceneView::noteFramePresented() {
    if (m_turn && m_turn->isFirstFramePrepared && !m_turn->start) {
        m_turn->start = m_scheduler->monotonic();
        requestFrame();
    }
}

void FlipSceneView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    updateLayerFrames();
}

void FlipSceneView::updateLayerFrames() {
    m_frontTransform.setSize(size());
    m_backTransform.setSize(size());
    updatePictureRect();
}

void FlipSceneView::updatePictureRect() {
    const QRectF part = m_pictureSource ? Picture::coveringPart(m_pictureSource->size(), size()) : QRectF();
    if (std::exchange(m_pictureRect, part) != part) {
        Q_EMIT pictureChanged();
    }
}

void FlipSceneView::takePicture() {
    if (!m_backView) {
        return;
    }
    m_pictureSource = m_backView;
    updatePictureRect();
    Q_EMIT pictureChanged();
    if (!usesShaders()) {
        grabPictures();
    } else if (m_backPicture) {
        QMetaObject::invokeMethod(m_backPicture, "scheduleUpdate");
    }
}

/// The pictures come with the next frame.
void FlipSceneView::grabPictures() {
    if (!window() || !window()->isVisible()) {
        return;
    }
    const QSharedPointer<QQuickItemGrabResult> back = m_backView->grabToImage();
    connect(
        back.get(), &QQuickItemGrabResult::ready, this,
        [this, back, view = m_backView] {
            // A picture that was given up meanwhile is not kept.
            if (view && m_pictureSource == view) {
                m_viewImage = back->image();
                Q_EMIT pictureChanged();
            }
        },
        Qt::SingleShotConnection);
    const double ratio = window()->effectiveDevicePixelRatio();
    if (!m_frontContent || m_frontImage.size() == (m_frontContent->size() * ratio).toSize()) {
        return;
    }
    const QSharedPointer<QQuickItemGrabResult> front = m_frontContent->grabToImage();
    connect(
        front.get(), &QQuickItemGrabResult::ready, this,
        [this, front] {
            m_frontImage = front->image().convertToFormat(QImage::Format_ARGB32_Premultiplied);
            m_frontImage.setDevicePixelRatio(1);
            Q_EMIT pictureChanged();
        },
        Qt::SingleShotConnection);
}

void FlipSceneView::showTurn(Scheduler::Duration elapsed) {
    const double progress = double(elapsed.count()) / double(m_turn->duration.count());
    if (m_turn->style == TurnStyle::crossFade) {
        showCrossFade(m_isOpen ? 1 - progress : progress);
    } else {
        const double from = m_isOpen ? kOpenAngle : 0;
        const double to = m_isOpen ? 0 : kOpenAngle;
        showRotation(progress < 1 ? std::lerp(from, to, m_spring.value(elapsed)) : to);
        setShadowOpacity(m_shadowPulse.value(progress));
    }
    // The back is not seen again in a turn back: its picture goes while there still are frames that free it.
    if (m_isOpen && m_backFace && !m_backFace->isVisible()) {
        releasePicture();
    }
}

void FlipSceneView::showRest() {
    showRotation(m_isOpen ? kOpenAngle : 0);
    setShadowOpacity(0);
}

void FlipSceneView::showRotation(double angle) {
    m_angle = angle;
    m_frontTransform.setAngle(angle);
    m_backTransform.setAngle(angle + std::numbers::pi);
    // The viewer stands on the axis through the card's centre, so a face is seen exactly when its cosine is positive.
    const bool isFrontSeen = std::cos(angle) > 0;
    if (m_frontFace) {
        m_frontFace->setVisible(isFrontSeen);
    }
    if (m_backFace) {
        m_backFace->setVisible(!isFrontSeen);
        m_backFace->setOpacity(1);
    }
    Q_EMIT poseChanged();
}

void FlipSceneView::showCrossFade(double backOpacity) {
    m_backOpacity = backOpacity;
    m_frontTransform.setAngle(0);
    m_backTransform.setAngle(0);
    if (m_frontFace) {
        m_frontFace->setVisible(backOpacity < 1);
    }
    if (m_backFace) {
        m_backFace->setVisible(backOpacity > 0);
        m_backFace->setOpacity(backOpacity);
    }
    Q_EMIT poseChanged();
}

void FlipSceneView::setShadowOpacity(qreal opacity) {
    if (std::exchange(m_shadowOpacity, opacity) != opacity) {
        Q_EMIT shadowOpacityChanged();
        Q_EMIT poseChanged();
    }
}

void FlipSceneView::armFrameWatch(Scheduler::Duration delay) {
    m_frameWatch = m_scheduler->after(delay, [this] { checkFrames(); });
}

void FlipSceneView::checkFrames() {
    const Scheduler::Duration silence = m_scheduler->monotonic() - m_turn->lastFrame;
    if (silence < kFrameGrace) {
        armFrameWatch(kFrameGrace - silence);
        return;
    }
    endTurn();
}

void FlipSceneView::endTurn() {
    stopTurn();
    m_isOpen = !m_isOpen;
    showRest();
    Q_EMIT isAnimatingChanged();
    Q_EMIT isOpenChanged();
    logLine(QStringLiteral("[FlipSceneView] 📖 Flip complete. isOpen: %1").arg(m_isOpen ? u"true"_qs : u"false"_qs));
    // Moved out first: the completion may start the next turn, or end this object.
    if (const auto completion = std::exchange(m_completionBlock, {})) {
        completion();
    }
}

void FlipSceneView::stopTurn() {
    m_turn.reset();
    m_frameWatch.cancel();
    m_nextFrame.cancel();
    for (const QMetaObject::Connection &signal : m_frameSignals) {
        disconnect(signal);
    }
    m_frameSignals.clear();
}

void FlipSceneView::requestFrame() {
    QQuickWindow *const shown = window();
    if (!shown) {
        return;
    }
    if (usesShaders() || !m_turn || !m_turn->start) {
        shown->update();
        return;
    }
    // Nothing but the processor paints, and it would paint as often as it can: no oftener than the screen shows.
    const double rate = shown->screen() ? shown->screen()->refreshRate() : 0;
    const auto period = std::chrono::duration_cast<Scheduler::Duration>(
        std::chrono::duration<double>(1 / std::clamp(rate, kSlowestRefresh, kFastestRefresh)));
    // On the beat of the first frame, so that what a timer is late by does not add up.
    const Scheduler::Duration sinceBeat = (m_scheduler->monotonic() - *m_turn->start) % period;
    m_nextFrame = m_scheduler->after(period - sinceBeat, [this] { advanceFrame(); });
}

} // namespace tallowby
