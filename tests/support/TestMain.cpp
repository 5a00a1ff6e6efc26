#include "platform/desktop/PictureDecoder.h"

#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QQuickWindow>

namespace tallowby::test {
void installWarningGuard();
}

int main(int argc, char **argv) {
    if (const auto exitCode = tallowby::runAsPictureDecoder(argc, argv)) {
        return *exitCode;
    }
    testing::InitGoogleMock(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) {
        // Set and not left to the environment, which is read only when the first window is made.
        QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tallowby-tests"));
    tallowby::test::installWarningGuard();
    return RUN_ALL_TESTS();
}
