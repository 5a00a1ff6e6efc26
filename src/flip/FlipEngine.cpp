#include "flip/FlipEngine.h"

#include "flip/FlipWindow.h"
#include "flip/scene/BackdropView.h"
#include "flip/scene/FlipSceneView.h"
#include "platform/AppEvents.h"
#include "platform/AppSettings.h"
#include "platform/Log.h"
#include "platform/desktop/DesktopCapture.h"
#include "platform/desktop/MotionPreference.h"

#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlProperty>

namespace tallowby {

using namespace std::chrono_literals;

namespace {

/// Lets an activation that only passes by, such as a system panel's, leave the canvas alone.
constexpr auto kFocusLossGrace = 400ms;
/// What the program's own activation may take before the user counts as gone elsewhere.
constexpr auto kFocusReturnGrace = 300ms;
/// The backdrop is blurred, so the desktop is captured at an eighth of its size.
constexpr int kCaptureReduction = 8;
constexpr QSizeF kFallbackCanvasSize{800, 600};
/// The property of the host's QML.
constexpr auto kHostedCanvas = "canvasView";

QUrl moduleFile(QStringView fileName) {
    return QUrl(u"qrc:/qt/qml/Tallowby/Flip/" + fileName);
}

std::unique_ptr<QQuickItem> createItem(QQmlComponent &component, const QVariantMap &properties = {}) {
    if (component.isError()) {
        qFatal("%s", qUtf8Printable(component.errorString()));
    }
    return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
}

/// The object that an item's QML names under `property`.
template <typename Type>
Type *part(QQuickItem &item, const char *property) {
    return qobject_cast<Type *>(item.property(property).value<QObject *>());
}

} // namespace

FlipEngine::FlipEngine(const FlipServices &services, QQmlEngine &qml, CanvasFactory makeCanvas)
    : m_services(services)
    , m_qml(qml)
    , m_makeCanvas(std::move(makeCanvas)) {
    setupNotifications();
    logLine(u"[FlipEngine] 🎬 Initialized");
}

FlipEngine::~FlipEngine() = default;

void FlipEngine::setupNotifications() {
    NotificationCenter &center = m_services.notifications;
    m_observations.clear();
    m_observations.push_back(
        center.observe(events::flipToggleRequested, [this](const Notification &) { handleToggleRequested(); }));
    m_observations.push_back(center.observe(events::flipTriggered, [this](const Notification &) { performFlip(); }));
    m_observations.push_back(
        center.observe(events::canvasCloseRequested, [this](const Notification &) { closeFlip(); }));
    disconnect(m_appSwitches);
    m_appSwitches = connect(&m_services.workspace, &Workspace::applicationActivated, this,
                            [this](const RunningApplication &application) { handleAppSwitch(application); });
}

void FlipEngine::setTallowbyContent(QQuickItem *view) {
    m_tallowbyContentView = view;
    if (m_flipWindow && m_flipWindow->contentView() == m_persistentHostingView.get()) {
        // It is what the user sees: it stays up until the turn back is over.
        m_retiredHostingView = std::move(m_persistentHostingView);
    }
    m_persistentHostingView.reset();
    logLine(u"[FlipEngine] 📦 Tallowby content stored");
}

void FlipEngine::prepare() {
    if (!m_flipWindow) {
        makeWindow();
        rehearse();
    }
}

void FlipEngine::handleToggleRequested() {
    if (m_state == FlipState::idle) {
        performFlip();
    } else if (m_state == FlipState::showing) {
        closeFlip();
    }
}

QCoro::Task<> FlipEngine::performFlip() {
    if (m_state != FlipState::idle) {
        logLine(QStringLiteral("[FlipEngine] ⚠️ Flip already in progress, state: %1")
                    .arg(QLatin1StringView(QMetaEnum::fromType<FlipState>().valueToKey(int(m_state)))));
        co_return;
    }
    logLine(u"[FlipEngine] 🚀 Starting flip sequence...");
    rememberKeyboardOwner();
    const QImage desktop = captureDesktop();
    setupFlipWindow();
    part<BackdropView>(*m_flipContainerView, "backdrop")->setCapture(desktop);
    chooseBackFace();
    m_flipWindow->setCanBecomeKey(true);
    m_flipWindow->setCanBecomeMain(true);
    m_flipWindow->setIgnoresMouseEvents(true);
    setState(FlipState::animating);
    m_flipWindow->showForFlip();
    m_services.presentation.setActivationPolicy(ActivationPolicy::regular);
    m_services.presentation.activateIgnoringOtherApps(*m_flipWindow);
    m_previousPresentationOptions = m_services.presentation.presentationOptions();
    m_services.presentation.setPresentationOptions(kAutoHideDock | kAutoHideMenuBar);
    const bool hasTurned = co_await rotation();
    if (hasTurned) {
        finishOpening();
    }
}

QCoro::Task<> FlipEngine::closeFlip() {
    return close(KeyboardReturn::toPrevious);
}

void FlipEngine::cleanup() {
    // A scene that was only prepared has nothing to clean up.
    if (m_flipWindow) {
        m_sceneView->cleanup();
    }
    m_cachedCanvasSnapshot = {};
    m_services.presentation.setPresentationOptions(m_previousPresentationOptions);
    m_services.presentation.setActivationPolicy(ActivationPolicy::accessory);
}

void FlipEngine::setState(FlipState state) {
    if (m_state != state) {
        m_state = state;
        Q_EMIT stateChanged();
    }
}

void FlipEngine::makeContainer() {
    if (m_flipContainerView) {
        return;
    }
    QQmlComponent component(&m_qml, moduleFile(u"FlipContainer.qml"));
    m_flipContainerView = createItem(component);
    m_sceneView = part<FlipSceneView>(*m_flipContainerView, "scene");
    m_sceneView->setScheduler(m_services.scheduler);
}

void FlipEngine::setupFlipWindow() {
    if (m_isFlipWindowSetUp) {
        return;
    }
    m_isFlipWindowSetUp = true;
    makeWindow();
    m_flipWindow->configure();
    logLine(u"[FlipEngine] 🏗️ Flip Window & Container Setup (Once)");
}

void FlipEngine::makeWindow() {
    if (m_flipWindow) {
        return;
    }
    m_flipWindow = std::make_unique<FlipWindow>(m_services.settings, m_services.presentation);
    connect(m_flipWindow.get(), &FlipWindow::closeRequested, this, [this] { closeFlip(); });
    makeContainer();
    m_flipWindow->setContentView(m_flipContainerView.get());
}

QQuickItem *FlipEngine::canvas() {
    if (m_tallowbyContentView) {
        return m_tallowbyContentView;
    }
    if (!m_fallbackCanvas) {
        m_fallbackCanvas.reset(m_makeCanvas());
    }
    return m_fallbackCanvas.get();
}

void FlipEngine::hostUnseen(QQuickItem *canvas) {
    if (m_unseenHostingView && part<QQuickItem>(*m_unseenHostingView, kHostedCanvas) == canvas) {
        return;
    }
    if (!m_hostComponent) {
        m_hostComponent = std::make_unique<QQmlComponent>(&m_qml, moduleFile(u"TallowbyOverlayContainer.qml"));
    }
    m_unseenHostingView =
        createItem(*m_hostComponent, {{QLatin1StringView(kHostedCanvas), QVariant::fromValue(canvas)}});
    m_flipWindow->addUnseen(m_unseenHostingView.get());
    if (m_flipWindow->size().isEmpty()) {
        m_unseenHostingView->setSize(kFallbackCanvasSize);
    }
    canvas->forceActiveFocus(Qt::OtherFocusReason);
}

void FlipEngine::rehearse() {
    hostUnseen(canvas());
    if (!m_flipWindow->drawUnseenFrame()) {
        return;
    }
    auto *const backdrop = part<BackdropView>(*m_flipContainerView, "backdrop");
    backdrop->setCapture(captureDesktop());
    m_sceneView->rehearse(canvas());
    connect(
        m_flipWindow.get(), &FlipWindow::unseenFrameDrawn, this,
        [this, backdrop] {
            m_sceneView->endRehearsal();
            backdrop->setCapture({});
        },
        Qt::SingleShotConnection);
}

void FlipEngine::chooseBackFace() {
    if (!m_tallowbyContentView) {
        // A canvas that was handed over has gone, and its host is of no more use.
        m_persistentHostingView.reset();
    }
    QQuickItem *const canvas = this->canvas();
    if (!m_persistentHostingView) {
        hostUnseen(canvas);
    }
    if (m_cachedCanvasSnapshot.isNull()) {
        m_sceneView->setBackContent(canvas);
    } else {
        m_sceneView->setBackContent(m_cachedCanvasSnapshot);
    }
    // From the first moment on, so that what is typed while the card still turns lands on it, in order.
    canvas->forceActiveFocus(Qt::OtherFocusReason);
}

void FlipEngine::createPersistentHostingView() {
    if (!m_tallowbyContentView) {
        m_tallowbyContentView = m_fallbackCanvas.get();
        logLine(u"[FlipEngine] ⚠️ Creating fallback InfiniteCanvasView for persistence");
    }
    hostUnseen(m_tallowbyContentView);
    m_persistentHostingView = std::move(m_unseenHostingView);
    logLine(u"[FlipEngine] 🏗️ Persistent Hosting View Created");
}

Waits::Wait FlipEngine::rotation() {
    return m_waits.until([this](Waits::Done done) {
        m_sceneView->setTurnStyle(m_services.motionPreference.prefersReducedMotion() ? TurnStyle::crossFade
                                                                                     : TurnStyle::rotation);
        m_sceneView->flip(std::move(done));
    });
}

void FlipEngine::finishOpening() {
    setState(FlipState::showing);
    if (!m_persistentHostingView) {
        createPersistentHostingView();
    }
    m_flipWindow->setContentView(m_persistentHostingView.get());
    m_sceneView->releasePicture();
    m_flipWindow->setIgnoresMouseEvents(false);
    const auto screen = m_services.settings.resolvedScreen();
    const QRectF frame = screen ? screen->frame : m_flipWindow->geometry();
    m_services.notifications.post(events::flipComplete, {{events::screenFrameKey, frame}});
}

QCoro::Task<> FlipEngine::close(KeyboardReturn keyboardReturn) {
    if (m_state != FlipState::showing) {
        co_return;
    }
    logLine(u"[FlipEngine] 🔙 Closing flip...");
    setState(FlipState::closing);
    m_flipWindow->setCanBecomeKey(false);
    m_flipWindow->setCanBecomeMain(false);
    m_flipWindow->setIgnoresMouseEvents(true);
    // The card shows what was seen last, with whatever floated over the canvas.
    m_sceneView->setBackContent(m_flipWindow->contentView());
    m_flipWindow->setContentView(m_flipContainerView.get());
    if (keyboardReturn == KeyboardReturn::staysWhereItIs) {
        m_keyboardOwner.reset();
    }
    returnKeyboard();
    m_services.notifications.post(events::flipReversing);
    const bool hasTurned = co_await rotation();
    if (hasTurned) {
        finishClosing();
    }
}

void FlipEngine::finishClosing() {
    m_services.presentation.setPresentationOptions(m_previousPresentationOptions);
    m_services.presentation.setActivationPolicy(ActivationPolicy::accessory);
    m_flipWindow->orderOut();
    setState(FlipState::idle);
    m_sceneView->cleanup();
    part<BackdropView>(*m_flipContainerView, "backdrop")->setCapture({});
    m_cachedCanvasSnapshot = {};
    m_retiredHostingView.reset();
    // Hiding a window may have passed the keyboard on to whatever lay below.
    returnKeyboard();
    m_keyboardOwner.reset();
    m_services.notifications.post(events::flipClosed);
    logLine(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)");
}

QCoro::Task<> FlipEngine::handleAppSwitch(RunningApplication application) {
    const QString identifier = application.bundleIdentifier;
    if (m_state != FlipState::showing || identifier.isEmpty() || isOwn(application)) {
        co_return;
    }
    const bool isGracePast = co_await m_waits.delay(m_services.scheduler, kFocusLossGrace);
    if (!isGracePast || !isStillInFront(identifier)) {
        co_return;
    }
    m_services.presentation.activateIgnoringOtherApps(*m_flipWindow);
    const bool isReturnPast = co_await m_waits.delay(m_services.scheduler, kFocusReturnGrace);
    if (!isReturnPast || !isStillInFront(identifier)) {
        co_return;
    }
    co_await close(KeyboardReturn::staysWhereItIs);
}

bool FlipEngine::isStillInFront(const QString &bundleIdentifier) const {
    const auto frontmost = m_services.workspace.frontmostApplication();
    return m_state == FlipState::showing && frontmost && frontmost->bundleIdentifier == bundleIdentifier;
}

bool FlipEngine::isOwn(const RunningApplication &application) const {
    return application.bundleIdentifier == m_services.workspace.mainBundleIdentifier();
}

void FlipEngine::rememberKeyboardOwner() {
    m_keyboardOwner = m_services.workspace.frontmostApplication();
    if (m_keyboardOwner && (m_keyboardOwner->window == 0 || isOwn(*m_keyboardOwner))) {
        m_keyboardOwner.reset();
    }
}

void FlipEngine::returnKeyboard() {
    if (!m_keyboardOwner) {
        return;
    }
    // Another application that has come to the front meanwhile keeps the keyboard.
    const auto frontmost = m_services.workspace.frontmostApplication();
    if (!frontmost || isOwn(*frontmost)) {
        m_services.workspace.activate(*m_keyboardOwner);
    }
}

QImage FlipEngine::captureDesktop() const {
    const auto screen = m_services.settings.resolvedScreen();
    return screen ? m_services.desktopCapture.capture(*screen, kCaptureReduction) : QImage();
}

} // namespace tallowby
