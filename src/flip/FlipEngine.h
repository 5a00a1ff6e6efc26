#pragma once

#include "flip/FlipState.h"
#include "platform/NotificationCenter.h"
#include "platform/Waits.h"
#include "platform/desktop/Presentation.h"
#include "platform/desktop/Workspace.h"

#include <QCoroTask>

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QQuickItem>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QQmlComponent;
class QQmlEngine;

namespace tallowby {

class AppSettings;
class DesktopCapture;
class FlipSceneView;
class FlipWindow;
class MotionPreference;
class Scheduler;

/// What the flip stands on; all of it outlives the engine.
struct FlipServices {
    NotificationCenter &notifications;
    Scheduler &scheduler;
    const AppSettings &settings;
    Workspace &workspace;
    Presentation &presentation;
    DesktopCapture &desktopCapture;
    MotionPreference &motionPreference;
};

/// Turns the screen over to the canvas, and back. Owns the one full-screen window, the scene that turns in it and the
/// host of the canvas, all made once and kept; makes the program a regular application for as long as the canvas is up.
/// Requests that do not fit the state are dropped, and a turn always runs to its end. Main thread only.
class FlipEngine : public QObject {
    Q_OBJECT
    Q_PROPERTY(tallowby::FlipStates::FlipState state READ state NOTIFY stateChanged)

public:
    /// Makes a canvas for when none was handed over; the engine owns it.
    using CanvasFactory = std::function<QQuickItem *()>;

    /// Observes its notifications from here on.
    FlipEngine(const FlipServices &services, QQmlEngine &qml, CanvasFactory makeCanvas);
    ~FlipEngine() override;

    [[nodiscard]] FlipState state() const { return m_state; }
    /// The window, once it is made.
    [[nodiscard]] FlipWindow *window() const { return m_flipWindow.get(); }

    /// Observes anew; what was observed before is not observed twice.
    void setupNotifications();
    /// Takes `view` as the canvas, from the next opening on. Not owned; an item that dies counts as never handed over.
    void setTallowbyContent(QQuickItem *view);
    /// A picture to show on the back of the card at the next opening in place of one of the canvas.
    void setCachedCanvasSnapshot(const QImage &snapshot) { m_cachedCanvasSnapshot = snapshot; }
    /// Does ahead of time what the first flip would spend its first moments on: makes window, scene and canvas, and has
    /// them drawn where nobody sees it. Best called when the program is idle.
    void prepare();

    /// Opens; ready when the canvas is up. Only `idle` lets it.
    QCoro::Task<> performFlip();
    /// Turns back; ready when the desktop is back. Does nothing unless the canvas is up.
    QCoro::Task<> closeFlip();
    /// Puts the desktop's chrome and the program's standing back at once, whatever runs. For the program's end.
    void cleanup();

Q_SIGNALS:
    void stateChanged();

private:
    /// Whether the application that had the keyboard before gets it back when the canvas goes.
    enum class KeyboardReturn { toPrevious, staysWhereItIs };

    void handleToggleRequested();
    QCoro::Task<> handleAppSwitch(RunningApplication application);
    [[nodiscard]] bool isStillInFront(const QString &bundleIdentifier) const;

    void setState(FlipState state);
    void setupFlipWindow();
    void makeContainer();
    void makeWindow();
    [[nodiscard]] QQuickItem *canvas();
    /// Puts `canvas` into a host, and that into the window, unseen but with the focus; does nothing when it is there
    /// already.
    void hostUnseen(QQuickItem *canvas);
    void rehearse();
    void chooseBackFace();
    void createPersistentHostingView();
    [[nodiscard]] Waits::Wait rotation();
    void finishOpening();
    QCoro::Task<> close(KeyboardReturn keyboardReturn);
    void finishClosing();

    [[nodiscard]] bool isOwn(const RunningApplication &application) const;
    void rememberKeyboardOwner();
    void returnKeyboard();
    [[nodiscard]] QImage captureDesktop() const;

    const FlipServices m_services;
    QQmlEngine &m_qml;
    const CanvasFactory m_makeCanvas;
    FlipState m_state = FlipState::idle;

    std::unique_ptr<QQmlComponent> m_hostComponent;
    std::unique_ptr<QQuickItem> m_fallbackCanvas;
    std::unique_ptr<FlipWindow> m_flipWindow;
    bool m_isFlipWindowSetUp = false;
    std::unique_ptr<QQuickItem> m_flipContainerView;
    FlipSceneView *m_sceneView = nullptr;
    QPointer<QQuickItem> m_tallowbyContentView;
    /// The host in the making: holds the canvas in the window, unseen, until the first turn is over. The canvas takes
    /// keys from the start of that turn on and must not be moved while an input method composes in it: an item that
    /// leaves the window loses the focus, and what is composed in it is committed there and then.
    std::unique_ptr<QQuickItem> m_unseenHostingView;
    std::unique_ptr<QQuickItem> m_persistentHostingView;
    /// A host whose canvas was replaced while it was up; it goes with the next close.
    std::unique_ptr<QQuickItem> m_retiredHostingView;
    QImage m_cachedCanvasSnapshot;
    PresentationOptions m_previousPresentationOptions = kDefaultPresentation;
    std::optional<RunningApplication> m_keyboardOwner;

    std::vector<NotificationCenter::Observation> m_observations;
    QMetaObject::Connection m_appSwitches;
    Waits m_waits;
};

} // namespace tallowby
