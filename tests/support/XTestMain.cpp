#include "platform/desktop/PictureDecoder.h"
#include "support/WarningGuard.h"
#include "support/XSession.h"

#include <gmock/gmock.h>

#include <QGuiApplication>

#include <cstdio>

namespace tallowby::test {
void installWarningGuard();
}

/// The main() of a test program that is itself a client of an X session: the session starts before Qt connects to it.
int main(int argc, char **argv) {
    if (const auto exitCode = tallowby::runAsPictureDecoder(argc, argv)) {
        return *exitCode;
    }
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QUICK_BACKEND", qgetenv("QT_QUICK_BACKEND").isEmpty() ? "software" : qgetenv("QT_QUICK_BACKEND"));
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    tallowby::test::XSession session({.windowManager = true, .messageBus = true});
    if (!session.error().isEmpty()) {
        std::fprintf(stderr, "No X session for the tests: %s\n", qUtf8Printable(session.error()));
        return 1;
    }
    session.adoptEnvironment();
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tallowby-tests"));
    tallowby::test::installWarningGuard();
    return RUN_ALL_TESTS();
}
