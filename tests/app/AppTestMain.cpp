#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QQuickWindow>

void qml_register_types_Tallowby_Platform();

namespace tallowby::test {
void installWarningGuard();
}

/// As the shared main(), with what the program's own windows and menus need, and with the user's folders elsewhere.
int main(int argc, char **argv) {
    testing::InitGoogleMock(&argc, argv);
    const tallowby::test::TemporaryFolder home;
    for (const char *folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(folder, home.path().toLocal8Bit());
    }
    qunsetenv("DISPLAY");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + home.file(QStringLiteral("no-bus")).toLocal8Bit());
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName(QStringLiteral("tallowby-tests"));
    QApplication::setApplicationVersion(QStringLiteral("2.0"));
    tallowby::test::installWarningGuard();
    return RUN_ALL_TESTS();
}
