#include "app/TallowbyApp.h"

#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/QmlTypes.h"
#include "app/SelfTest.h"
#include "platform/Log.h"
#include "platform/desktop/InstanceBus.h"
#include "platform/scene/SceneGraph.h"

#include <QApplication>
#include <QIcon>
#include <QProcess>
#include <QQuickWindow>
#include <QTextStream>

#include <csignal>
#include <cstdio>

namespace tallowby {

namespace {

constexpr int kUsageError = 2;
/// Another program has the notes open.
constexpr int kNotesInUse = 3;
/// The windows could not be drawn; the program goes on as another process, which paints them.
constexpr int kSceneGraphFailed = 4;

/// Takes the commands of later starts; null before and after it runs.
AppDelegate *running = nullptr;

QStringList argumentsOf(int argc, char **argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    return arguments;
}

InstanceCommand commandFor(LaunchAction action) {
    switch (action) {
    case LaunchAction::toggle:
        return InstanceCommand::toggle;
    case LaunchAction::settings:
        return InstanceCommand::settings;
    case LaunchAction::quit:
        return InstanceCommand::quit;
    default:
        return InstanceCommand::activate;
    }
}

/// The canvas needs a window that covers the whole screen and keys that work everywhere: on a Wayland session both come
/// through its X server, unless the user has chosen a platform.
void choosePlatform() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

/// Before anything is loaded that only the running program needs, a display among it.
bool isHandedOver(int argc, char **argv, LaunchAction action) {
    const QCoreApplication application(argc, argv);
    return makeInstanceBus()->send(commandFor(action));
}

int runAgent(int argc, char **argv, LaunchAction action) {
    choosePlatform();
    QQuickWindow::setDefaultAlphaBuffer(true);
    QApplication application(argc, argv);
    chooseSceneGraph();
    onSceneGraphError([](const QString &reason) {
        logLine(QString(u"[SceneGraph] ❌ Starting again to paint the windows instead: " + reason));
        QCoreApplication::exit(kSceneGraphFailed);
    });
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/tallowby/status-item.svg")));
    registerQmlTypes();

    const auto bus = makeInstanceBus();
    const auto claim = bus->claim(commandFor(action), [](InstanceCommand command) {
        if (running) {
            running->handle(command);
        } else if (command == InstanceCommand::quit) {
            QCoreApplication::exit();
        }
    });
    if (claim == InstanceBus::Claim::handedOver) {
        return 0;
    }
    if (claim == InstanceBus::Claim::unavailable) {
        logLine(u"[InstanceBus] ⚠️ No session bus: later starts do not find this one");
    }

    AppDelegate delegate;
    onTerminationSignal([] { QCoreApplication::exit(); });
    // A file that may not grow any more is an error of the write, and no reason to end.
    std::signal(SIGXFSZ, SIG_IGN);
    // Nor is a log that nobody reads any more.
    std::signal(SIGPIPE, SIG_IGN);
    delegate.takeNotes([&delegate, action] {
        running = &delegate;
        delegate.applicationDidFinishLaunching();
        if (action != LaunchAction::run) {
            delegate.handle(commandFor(action));
        }
    });
    const int exitCode = QApplication::exec();
    if (!running) {
        return kNotesInUse;
    }
    delegate.applicationWillTerminate();
    running = nullptr;
    return exitCode;
}

int startAgent(int argc, char **argv, LaunchAction action) {
    const int exitCode = runAgent(argc, argv, action);
    if (exitCode != kSceneGraphFailed) {
        return exitCode;
    }
    // Only now are the notes and the name on the bus free for it.
    qputenv("QT_QUICK_BACKEND", "software");
    return QProcess::startDetached(QString::fromLocal8Bit(argv[0]), argumentsOf(argc, argv)) ? 0 : exitCode;
}

} // namespace

int runTallowby(int argc, char **argv) {
    QCoreApplication::setApplicationName(QStringLiteral("Tallowby"));
    QCoreApplication::setOrganizationName(QStringLiteral("Tallowby"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TALLOWBY_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tallowby.Tallowby"));

    const auto action = parseCommandLine(argumentsOf(argc, argv));
    if (!action) {
        QTextStream(stderr) << kUsageLine << Qt::endl;
        return kUsageError;
    }
    switch (*action) {
    case LaunchAction::version:
        QTextStream(stdout) << QStringLiteral("Tallowby ") << QCoreApplication::applicationVersion() << Qt::endl;
        return 0;
    case LaunchAction::help:
        QTextStream(stdout) << helpText() << Qt::flush;
        return 0;
    case LaunchAction::selfTest:
        return runSelfTest(argc, argv);
    default:
        if (isHandedOver(argc, argv, *action) || *action == LaunchAction::quit) {
            return 0;
        }
        return startAgent(argc, argv, *action);
    }
}

} // namespace tallowby
