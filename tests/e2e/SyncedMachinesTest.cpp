#include "e2e/BackendOnLoopback.h"
#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "support/ScriptedServer.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>

namespace tallowby::test {

class SyncedMachines : public Desk {
protected:
    BackendOnLoopback backend;

    void SetUp() override {
        Desk::SetUp();
        environment().insert(QStringLiteral("TALLOWBY_SUPABASE_URL"), backend.address());
    }
    [[nodiscard]] testing::AssertionResult backendHas(QStringList texts) {
        texts.sort();
        return eventually([&] { return backend.texts() == texts; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "the backend has " << backend.texts().join(u'|').toStdString();
    }
    /// Another home of the same person.
    void moveToAnotherMachine() {
        const QString config = environment().value(QStringLiteral("XDG_CONFIG_HOME"));
        const QString home = config + QStringLiteral("-elsewhere");
        QDir().mkpath(home + QStringLiteral("/Tallowby"));
        ASSERT_TRUE(QFile::copy(config + QStringLiteral("/Tallowby/Tallowby.conf"),
                                home + QStringLiteral("/Tallowby/Tallowby.conf")));
        environment().insert(QStringLiteral("XDG_CONFIG_HOME"), home);
        environment().insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("-data"));
    }
};

TEST_F(SyncedMachines, ANoteReachesTheOtherMachineAndItsEditComesBack) {
    startProgram();
    openCanvas();
    keyboard.type(u"from here");
    ASSERT_TRUE(backendHas({QStringLiteral("from here")}));
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({QStringLiteral("from here")}));
    endProgram();
    const QProcessEnvironment first = environment();

    moveToAnotherMachine();
    startProgram();
    openCanvas();
    ASSERT_TRUE(program().says(u"[BlockStorage] 💾 Persisted 1 blocks"));
    ASSERT_TRUE(notesBecome({QStringLiteral("from here")}));
    pointer.moveTo(kScreenCentre + QPoint(150, 150));
    keyboard.type(u"and there");
    ASSERT_TRUE(backendHas({QStringLiteral("from here"), QStringLiteral("and there")}));
    keyboard.tap(XK_Escape);
    endProgram();

    environment() = first;
    startProgram();
    openCanvas();
    EXPECT_TRUE(notesBecome({QStringLiteral("from here"), QStringLiteral("and there")}));
}

TEST_F(SyncedMachines, WhatIsTypedWhileTheServerIsOutOfOrderArrivesLater) {
    backend.fault = Fault::outOfOrder;
    startProgram();
    openCanvas();
    keyboard.type(u"kept");
    ASSERT_TRUE(program().says(u"[SyncEngine] ❌ Upsert Error Status 500: <html>out of order</html>"));
    EXPECT_TRUE(program().says(u"[SyncEngine] ❌ Push failed: Network request failed"));
    ASSERT_TRUE(notesBecome({QStringLiteral("kept")}));
    const int before = backend.refused;
    backend.fault = Fault::none;
    keyboard.type(u" and sent");
    EXPECT_TRUE(backendHas({QStringLiteral("kept and sent")}));
    EXPECT_LT(before, 20) << "a server that is out of order is asked over and over";
}

TEST_F(SyncedMachines, ServersThatGoWrongInEveryWayLoseNothingAndAreNotPressed) {
    BackendOnLoopback elsewhere;
    backend.otherPort = elsewhere.port();
    startProgram();
    openCanvas();
    QString text;
    double memory = 0;
    for (int i = 1; i < 2 * kFaultCount; ++i) {
        const auto fault = static_cast<Fault>(i % kFaultCount);
        if (fault == Fault::none) {
            memory = program().residentMiB();
            continue;
        }
        const int before = backend.refused;
        backend.fault = fault;
        keyboard.type(u"x");
        text += u'x';
        ASSERT_TRUE(eventually([&] { return backend.refused > before; })) << "fault " << i;
        ASSERT_TRUE(program().says(u"[SyncEngine] ❌ Push failed: ")) << "fault " << i;
    }
    EXPECT_TRUE(notesBecome({text}));
    const int refused = backend.refused;
    const double processor = program().processorSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(3));
    EXPECT_LT(backend.refused, refused + 5) << "a server that goes wrong is asked over and over";
    EXPECT_LT(program().processorSeconds() - processor, 0.5);
    EXPECT_LT(program().residentMiB(), memory + 20);

    backend.fault = Fault::none;
    keyboard.type(u"y");
    EXPECT_TRUE(backendHas({text + u'y'}));
    EXPECT_TRUE(elsewhere.posted(u"").empty()) << "the key went where a redirect pointed";
}

TEST_F(SyncedMachines, AServerThatCannotProveWhoItIsGetsNothing) {
    BackendOnLoopback impostor(untrustedTls());
    environment().insert(QStringLiteral("TALLOWBY_SUPABASE_URL"), impostor.address());
    startProgram();
    openCanvas();
    keyboard.type(u"mine");
    ASSERT_TRUE(program().says(u"The server could not prove who it is"));
    EXPECT_TRUE(notesBecome({QStringLiteral("mine")}));
    EXPECT_TRUE(impostor.posted(u"").empty());
}

TEST_F(SyncedMachines, AnAddressThatCannotBeUsedIsSaidInOneLine) {
    environment().insert(QStringLiteral("TALLOWBY_SUPABASE_URL"), QStringLiteral("http://example.org"));
    Program refused(environment());
    EXPECT_NE(refused.exitCode(), 0);
    EXPECT_TRUE(refused.hasSaid(u"Tallowby cannot start: TALLOWBY_SUPABASE_URL must begin with https"));
}

} // namespace tallowby::test
