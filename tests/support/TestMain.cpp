#include <gmock/gmock.h>

#include <QGuiApplication>

namespace tallowby::test {
void installWarningGuard();
}

int main(int argc, char **argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QUICK_BACKEND", qgetenv("QT_QUICK_BACKEND").isEmpty() ? "software" : qgetenv("QT_QUICK_BACKEND"));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tallowby-tests"));
    tallowby::test::installWarningGuard();
    return RUN_ALL_TESTS();
}
