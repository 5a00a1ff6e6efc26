#include "media/UnusedRecordings.h"
#include "storage/BlockStorage.h"
#include "storage/DataFolderLock.h"
#include "storage/MediaStorage.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;

class UnusedRecordingsTest : public testing::Test {
protected:
    UnusedRecordingsTest() {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        EXPECT_TRUE(MediaStorage::directory().has_value());
        EXPECT_EQ(lock.take(), DataFolderLock::Outcome::taken);
    }
    ~UnusedRecordingsTest() override { qunsetenv("XDG_DATA_HOME"); }

    [[nodiscard]] static QString makeFile(const QString &ending) {
        const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + ending;
        EXPECT_TRUE(QFile(*MediaStorage::directory() + u'/' + name).open(QFile::WriteOnly));
        return name;
    }
    [[nodiscard]] static bool isThere(const QString &name) { return MediaStorage::existingFile(name).has_value(); }
    void restart() {
        recordings = std::make_unique<UnusedRecordings>(storage, lock, scheduler);
        scheduler.advance(1min);
    }
    /// The program is started once a day.
    void useFor(int days) {
        for (int day = 0; day < days; ++day) {
            scheduler.advance(24h);
            restart();
        }
    }

    TemporaryFolder folder;
    LogCapture log;
    VirtualScheduler scheduler;
    DataFolderLock lock{folder.file(QStringLiteral("Tallowby"))};
    /// Of the store; the test of a file that cannot be read hands in another.
    BlockStorage storage{scheduler, folder.file(QStringLiteral("Tallowby/blocks.json"))};
    std::unique_ptr<UnusedRecordings> recordings;
};

} // namespace

TEST_F(UnusedRecordingsTest, GoToTheTrashAfterThirtyDaysOfUseWithoutAName) {
    const QString used = makeFile(QStringLiteral(".m4a"));
    const QString replaced = makeFile(QStringLiteral(".m4a"));
    const QString film = makeFile(QStringLiteral(".mp4"));
    const QString answer = makeFile(QStringLiteral("-feedback.m4a"));
    const QString foreign = makeFile(QStringLiteral(".ogg"));
    const BlockPtr note = Block::voiceNote(QUuid::createUuid(), {});
    note->setMediaFileName(used);
    storage.insert(note);
    restart();
    useFor(29);
    EXPECT_TRUE(isThere(replaced) && isThere(film) && isThere(answer));
    note->setDeletedAt(Timestamp::from(scheduler.now()));
    restart();
    scheduler.advance(25h);
    EXPECT_TRUE(isThere(replaced)) << "an undo could still bring its block back";
    restart();
    EXPECT_FALSE(isThere(replaced) || isThere(film) || isThere(answer));
    EXPECT_TRUE(QFile::exists(folder.file(u"Trash/files/"_qs + film)));
    EXPECT_TRUE(isThere(foreign));
    EXPECT_TRUE(log.lines().contains(QStringLiteral(
        "[UnusedRecordings] 🗑️ Moved 3 recordings to the trash that no note has named for 30 days")));

    EXPECT_TRUE(isThere(used)) << "its days began when its note was thrown away";
    note->setDeletedAt(std::nullopt);
    restart();
    scheduler.advance(31 * 24h);
    note->setDeletedAt(Timestamp::from(scheduler.now()));
    restart();
    useFor(29);
    EXPECT_TRUE(isThere(used)) << "they begin anew";
    useFor(1);
    EXPECT_FALSE(isThere(used));
}

TEST_F(UnusedRecordingsTest, StayWhileAnythingMayStillNameThemAndWhateverTheClockDoes) {
    const QString recording = makeFile(QStringLiteral(".m4a"));
    restart();
    scheduler.advance(10 * 365 * 24h);
    useFor(20);
    EXPECT_TRUE(isThere(recording)) << "a clock that was set right is no thirty days of use";
    for (const QString &name : {u"blocks.json.unreadable-1"_qs, u"blocks.json.other-1"_qs}) {
        QFile kept(folder.file(u"Tallowby/"_qs + name));
        ASSERT_TRUE(kept.open(QFile::WriteOnly));
        useFor(31);
        EXPECT_TRUE(isThere(recording)) << qPrintable(name);
        ASSERT_TRUE(kept.remove());
    }
    DataFolderLock notOurs(folder.file(QStringLiteral("missing")));
    UnusedRecordings second(storage, notOurs, scheduler);
    scheduler.advance(1min);
    ASSERT_TRUE(QDir(folder.path()).mkpath(u"broken/blocks.json"_qs));
    BlockStorage broken(scheduler, folder.file(u"broken/blocks.json"_qs));
    for (int day = 0; day < 31; ++day) {
        UnusedRecordings third(broken, lock, scheduler);
        scheduler.advance(24h);
    }
    EXPECT_TRUE(isThere(recording));
    useFor(11);
    EXPECT_FALSE(isThere(recording));
}

TEST_F(UnusedRecordingsTest, AListThatWasTamperedWithRemovesNothingEarly) {
    const QString recording = makeFile(QStringLiteral(".m4a"));
    const QString outside = folder.file(QStringLiteral("Tallowby/blocks.json"));
    ASSERT_TRUE(QFile(outside).open(QFile::WriteOnly));
    const auto keep = [this](const QByteArray &list) {
        QFile file(folder.file(QStringLiteral("Tallowby/unused-media.json")));
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(list) == list.size());
    };
    for (const QByteArray &date :
         {QByteArray(R"("3000-01-01T00:00:00Z")"), QByteArray("17"), QByteArray(R"("soon")")}) {
        keep("{\"" + recording.toUtf8() + "\":" + date + R"(,"../blocks.json":"2001-01-01T00:00:00Z"})");
        restart();
        EXPECT_TRUE(isThere(recording)) << date.toStdString();
    }
    keep("[not a list");
    restart();
    EXPECT_TRUE(isThere(recording));
    EXPECT_TRUE(QFile::exists(outside));
}

} // namespace tallowby::test
