#include "app/sync/SyncStatus.h"
#include "sync/SyncFixture.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tallowby::test {

using SyncStatusTest = SyncFixture;
using Tone = SyncStatus::Tone;

TEST_F(SyncStatusTest, SaysInWordsHowItStands) {
    SyncStatus status(scheduler);
    int changes = 0;
    QObject::connect(&status, &SyncStatus::changed, [&changes] { ++changes; });
    EXPECT_EQ(status.tone(), Tone::Quiet);
    EXPECT_EQ(status.summary(), u"Connects when the canvas is first opened");
    EXPECT_EQ(status.userId(), QString());

    start();
    status.setEngine(engine.get());
    EXPECT_EQ(status.tone(), Tone::Good);
    EXPECT_EQ(status.summary(), u"Synced");
    EXPECT_TRUE(status.detail().startsWith(u"last at ")) << qPrintable(status.detail());
    EXPECT_EQ(status.userId(), userId());
    status.copyUserId();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), userId());

    changes = 0;
    answerAll(HttpResponse{500, {}, {}, {}});
    add(u"one"_qs);
    add(u"two"_qs);
    scheduler.advance(1s);
    EXPECT_GT(changes, 0);
    EXPECT_EQ(status.tone(), Tone::Bad);
    EXPECT_EQ(status.summary(), u"Not synced");
    EXPECT_TRUE(status.detail().startsWith(
        u"Network request failed · your notes are kept on this computer · 2 changes wait · last at "))
        << qPrintable(status.detail());

    engine->disconnect();
    EXPECT_EQ(status.tone(), Tone::Quiet);
    EXPECT_EQ(status.summary(), u"Not connected");
    engine.reset();
    EXPECT_EQ(status.tone(), Tone::Quiet);
    EXPECT_EQ(status.detail(), QString());
}

TEST_F(SyncStatusTest, WhoeverHasNoBackendIsToldSoQuietly) {
    answerAll(HttpFailure{u"The server does not answer"_qs});
    start();
    SyncStatus status(scheduler);
    status.setEngine(engine.get());
    EXPECT_EQ(status.tone(), Tone::Quiet);
    EXPECT_EQ(status.summary(), u"Not connected");
    EXPECT_EQ(status.detail(), u"The server does not answer · your notes are kept on this computer");

    backend.fate = nullptr;
    add(u"one"_qs);
    scheduler.advance(1s);
    EXPECT_EQ(status.tone(), Tone::Good);
    answerAll(HttpFailure{u"The server does not answer"_qs});
    add(u"two"_qs);
    scheduler.advance(1s);
    EXPECT_EQ(status.tone(), Tone::Bad);
}

} // namespace tallowby::test
