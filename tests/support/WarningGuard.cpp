#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <mutex>

namespace tallowby::test {

namespace {

std::mutex guardMutex;
QStringList expectedParts;
QStringList unexpectedWarnings;

void receiveMessage(QtMsgType type, const QMessageLogContext &, const QString &message) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    if (type == QtDebugMsg || type == QtInfoMsg) {
        return;
    }
    const std::lock_guard lock(guardMutex);
    const auto isExpected = [&message](const QString &part) { return message.contains(part); };
    if (std::ranges::none_of(expectedParts, isExpected)) {
        unexpectedWarnings << message;
    }
}

class WarningListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &) override {
        const std::lock_guard lock(guardMutex);
        expectedParts.clear();
        unexpectedWarnings.clear();
    }
    void OnTestEnd(const testing::TestInfo &) override {
        const std::lock_guard lock(guardMutex);
        for (const QString &warning : std::as_const(unexpectedWarnings)) {
            ADD_FAILURE() << "unannounced warning: " << qPrintable(warning);
        }
    }
};

} // namespace

void expectWarning(const QString &part) {
    const std::lock_guard lock(guardMutex);
    expectedParts << part;
}

/// Called once by the shared main().
void installWarningGuard() {
    qInstallMessageHandler(receiveMessage);
    testing::UnitTest::GetInstance()->listeners().Append(new WarningListener);
}

} // namespace tallowby::test
