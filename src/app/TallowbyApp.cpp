#include "app/TallowbyApp.h"

#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/QmlTypes.h"
#include "app/SelfTest.h"
#include "platform/desktop/InstanceBus.h"
#include "platform/scene/SceneGraph.h"

#include <QApplication>
#include <QIcon>
#include <QQuickWindow>
#include <QTextStream>

#include <csignal>
#include <cstdio>

namespace tallowby {

namespace {

constexpr int kUsageError = 2;
/// Another program has the notes open.
constexpr int kNotesInUse = 3;

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

int runAgent(int argc, char **argv, LaunchAction action) {
    choosePlatform();
    chooseSceneGraph();
    QQuickWindow::setDefaultAlphaBuffer(true);
    QApplication application(argc, argv);
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
    if (claim == InstanceBus::Claim::handedOver || action == LaunchAction::quit) {
        return 0;
    }

    AppDelegate delegate;
    onTerminationSignal([] { QCoreApplication::exit(); });
    // A file that may not grow any more is an error of the write, and no reason to end.
    std::signal(SIGXFSZ, SIG_IGN);
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
        return runAgent(argc, argv, *action);
    }
}

} // namespace tallowby
