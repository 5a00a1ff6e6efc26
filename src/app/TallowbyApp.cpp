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

#include <cstdio>

namespace tallowby {

namespace {

constexpr int kUsageError = 2;

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

    AppDelegate *running = nullptr;
    const auto bus = makeInstanceBus();
    const auto claim = bus->claim(commandFor(action), [&running](InstanceCommand command) {
        if (running) {
            running->handle(command);
        }
    });
    if (claim == InstanceBus::Claim::handedOver || action == LaunchAction::quit) {
        return 0;
    }

    AppDelegate delegate;
    running = &delegate;
    onTerminationSignal([] { QCoreApplication::exit(); });
    delegate.applicationDidFinishLaunching();
    if (action != LaunchAction::run) {
        delegate.handle(commandFor(action));
    }
    const int exitCode = QApplication::exec();
    running = nullptr;
    delegate.applicationWillTerminate();
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
