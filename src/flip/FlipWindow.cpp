#include "flip/FlipWindow.h"

#include "platform/AppSettings.h"
#include "platform/Log.h"
#include "platform/desktop/Presentation.h"
#include "platform/scene/SceneGraph.h"

#include <QQuickItem>

namespace tallowby {

namespace {

/// As points of a rectangle are written elsewhere: with one decimal at least.
QString pointText(int points) {
    return QString::number(points) + u".0";
}

QString frameText(const QRect &frame) {
    return u'(' + pointText(frame.x()) + u", " + pointText(frame.y()) + u", " + pointText(frame.width()) + u", " +
           pointText(frame.height()) + u')';
}

/// What starts or continues a gesture, as against what ends one.
bool isPointerInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::NativeGesture:
    case QEvent::Enter:
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        return true;
    default:
        return false;
    }
}

} // namespace

FlipWindow::FlipWindow(const AppSettings &settings, Presentation &presentation)
    : m_settings(settings)
    , m_presentation(presentation) {
    // The clear colour gives the surface its alpha channel.
    setColor(Qt::transparent);
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    setTitle(tr("Tallowby canvas"));
    watchSceneGraph(*this);
}

void FlipWindow::configure() {
    endUnseenFrame();
    if (const auto screen = m_settings.resolvedScreen()) {
        setGeometry(screen->frame);
        fitToContents();
    }
    logLine(QStringLiteral("[FlipWindow] 🪟 Configured: %1").arg(frameText(geometry())));
}

bool FlipWindow::drawUnseenFrame() {
    m_isDrawingUnseen = m_presentation.showUnseen(*this);
    if (m_isDrawingUnseen) {
        fitToContents();
        // Comes from the thread that renders.
        connect(this, &QQuickWindow::frameSwapped, this, &FlipWindow::endUnseenFrame);
    }
    return m_isDrawingUnseen;
}

void FlipWindow::endUnseenFrame() {
    if (!m_isDrawingUnseen) {
        return;
    }
    disconnect(this, &QQuickWindow::frameSwapped, this, &FlipWindow::endUnseenFrame);
    m_isDrawingUnseen = false;
    m_presentation.hideUnseen(*this);
    Q_EMIT unseenFrameDrawn();
}

void FlipWindow::setCanBecomeKey(bool canBecomeKey) {
    m_canBecomeKey = canBecomeKey;
    setFlag(Qt::WindowDoesNotAcceptFocus, !canBecomeKey);
}

void FlipWindow::setContentView(QQuickItem *view) {
    if (m_contentView == view) {
        return;
    }
    if (m_contentView) {
        // Unseen by opacity and not by visibility, which would cost it the focus.
        m_contentView->setOpacity(0);
        m_contentView->setZ(0);
    }
    addUnseen(view);
    view->setOpacity(1);
    view->setZ(1);
    m_contentView = view;
}

void FlipWindow::addUnseen(QQuickItem *view) {
    view->setParentItem(contentItem());
    view->setPosition({});
    view->setSize(size());
    view->setOpacity(0);
}

void FlipWindow::showForFlip() {
    if (const auto screen = m_settings.resolvedScreen()) {
        setGeometry(screen->frame);
    }
    fitToContents();
    m_presentation.preparePanel(*this);
    // A window that is mapped comes up in front of its like.
    show();
    logLine(u"[FlipWindow] 👁️ Shown on main screen");
}

void FlipWindow::orderOut() {
    hide();
    logLine(u"[FlipWindow] 🙈 Hidden");
}

bool FlipWindow::event(QEvent *event) {
    if (event->type() == QEvent::Close) {
        event->ignore();
        Q_EMIT closeRequested();
        return true;
    }
    if (m_ignoresMouseEvents && isPointerInput(event->type())) {
        event->accept();
        return true;
    }
    return QQuickWindow::event(event);
}

void FlipWindow::resizeEvent(QResizeEvent *event) {
    QQuickWindow::resizeEvent(event);
    fitToContents();
}

void FlipWindow::fitToContents() {
    // What is drawn unseen is drawn as large as it will be seen, so that there is nothing left to lay out.
    const auto screen = m_isDrawingUnseen ? m_settings.resolvedScreen() : std::nullopt;
    const QSizeF fullSize = screen ? screen->frame.size() : size();
    contentItem()->setSize(fullSize);
    const auto views = contentItem()->childItems();
    for (QQuickItem *view : views) {
        view->setSize(fullSize);
    }
}

} // namespace tallowby
