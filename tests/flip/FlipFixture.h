#pragma once

#include "flip/FlipEngine.h"
#include "flip/FlipWindow.h"
#include "flip/scene/FlipSceneView.h"
#include "platform/AppEvents.h"
#include "platform/AppSettings.h"
#include "support/FakeDesktop.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QQmlEngine>
#include <QQuickItem>

void qml_register_types_Tallowby_Flip();
void qml_register_types_Tallowby_Platform();

namespace tallowby::test {

/// An item in the place of the canvas that notes what reaches it.
class NotingCanvas final : public QQuickItem {
public:
    NotingCanvas() {
        setAcceptedMouseButtons(Qt::LeftButton);
        setFlag(ItemIsFocusScope);
    }
    QString typed;
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override { typed += event->text(); }
    void mousePressEvent(QMouseEvent *) override { ++presses; }
};

inline void typeKey(QWindow &window, Qt::Key key, const QString &text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&window, &press);
}

inline void click(QWindow &window, QPointF at) {
    for (const auto &[type, buttons] :
         {std::pair(QEvent::MouseButtonPress, Qt::LeftButton), std::pair(QEvent::MouseButtonRelease, Qt::NoButton)}) {
        QMouseEvent event(type, at, at, Qt::LeftButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
    }
}

/// Shows a running turn frame by frame, at 60 a second, to its end.
inline void runTurn(FlipSceneView &scene, VirtualScheduler &clock) {
    scene.advanceFrame();
    scene.noteFramePresented();
    while (scene.isAnimating()) {
        clock.advance(std::chrono::nanoseconds(1'000'000'000 / 60));
        scene.advanceFrame();
    }
}

inline QQmlEngine &qmlEngine() {
    static QQmlEngine *const engine = [] {
        qml_register_types_Tallowby_Platform();
        qml_register_types_Tallowby_Flip();
        auto *const made = new QQmlEngine(QCoreApplication::instance());
        made->addImportPath(QStringLiteral("qrc:/qt/qml"));
        return made;
    }();
    return *engine;
}

/// An engine on a desktop that does as the test says, with a canvas handed over.
class Flip : public testing::Test {
protected:
    Flip() {
        for (const QLatin1StringView name : {events::flipComplete, events::flipReversing, events::flipClosed}) {
            m_observations.push_back(notifications.observe(name, [this](const Notification &notification) {
                posted << notification.name;
                lastUserInfo = notification.userInfo;
            }));
        }
        desktop.workspaceService.bringToFront(QStringLiteral("editor"), 77);
        engine->setTallowbyContent(&canvas);
        std::ignore = log.take();
    }

    /// The scene, while the window shows it.
    [[nodiscard]] FlipSceneView &scene() const {
        return *qobject_cast<FlipSceneView *>(engine->window()->contentView()->property("scene").value<QObject *>());
    }
    void post(QLatin1StringView name) { notifications.post(name); }
    void toggle() { post(events::flipToggleRequested); }
    /// The turn that runs is seen to its end.
    void turn() { runTurn(scene(), clock); }
    void open() {
        toggle();
        turn();
        ASSERT_EQ(engine->state(), FlipState::showing);
    }

    LogCapture log;
    TemporaryFolder folder;
    UserDefaults defaults{folder.file(QStringLiteral("flip.conf"))};
    NotificationCenter notifications;
    VirtualScheduler clock;
    FakeDesktop desktop;
    AppSettings settings{defaults, notifications, desktop.displayService};
    NotingCanvas canvas;
    int canvasesMade = 0;
    QStringList posted;
    QVariantMap lastUserInfo;
    std::unique_ptr<FlipEngine> engine = std::make_unique<FlipEngine>(
        FlipServices{notifications, clock, settings, desktop.workspaceService, desktop.presentationService,
                     desktop.captureService, desktop.motionService},
        qmlEngine(), [this] {
            ++canvasesMade;
            return new NotingCanvas;
        });

private:
    std::vector<NotificationCenter::Observation> m_observations;
};

} // namespace tallowby::test
