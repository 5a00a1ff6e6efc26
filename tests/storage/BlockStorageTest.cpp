#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace tallowby {

namespace {

using namespace std::chrono_literals;

const QUuid kUserId = QUuid::createUuid();

class BlockStorageTest : public testing::Test {
protected:
    test::LogCapture log;
    test::TemporaryFolder folder;
    test::VirtualScheduler scheduler;
    QString path = folder.file(u"Tallowby/blocks.json"_qs);
    std::unique_ptr<BlockStorage> storage;

    void open() {
        storage.reset();
        storage = std::make_unique<BlockStorage>(scheduler, path);
    }
    /// Ends the store, which lets the queue finish, and returns what was said until then.
    QStringList close() {
        storage.reset();
        return log.take();
    }
    BlockPtr insertText(const QString &text) {
        auto block = Block::text(kUserId, {}, text);
        storage->insert(block);
        return block;
    }
    [[nodiscard]] QByteArray fileContent() const {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    void putFile(const QByteArray &bytes) const {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(bytes);
    }
    [[nodiscard]] QStringList texts() const {
        QStringList all;
        for (const auto &block : storage->blocks()) {
            all << block->rawTextOrEmpty();
        }
        return all;
    }
    static QString persisted(int count) {
        return u"[BlockStorage] 💾 Persisted %1 blocks to disk on background thread"_qs.arg(count);
    }
    static QString loaded(int count, int ghosts) {
        return u"[BlockStorage] 📂 Loaded %1 active blocks from disk (Purged %2 ghosts)"_qs.arg(count).arg(ghosts);
    }
};

} // namespace

TEST_F(BlockStorageTest, WhatIsInsertedIsThereAfterARestartAndWhatIsDeletedIsNot) {
    open();
    EXPECT_FALSE(QFile::exists(path));
    int blocksChanged = 0;
    QObject::connect(storage.get(), &BlockStorage::blocksChanged, [&blocksChanged] { ++blocksChanged; });
    const auto first = insertText(u"first"_qs);
    const auto ghost = insertText(u"ghost"_qs);
    const auto last = insertText(u"last"_qs);
    first->setStickyColor(u"blue"_qs);
    storage->insert(first);
    EXPECT_EQ(blocksChanged, 3);
    EXPECT_EQ(storage->blocks().size(), 3U);
    EXPECT_TRUE(first->needsSync());
    EXPECT_EQ(storage->findById(last->id()), last);
    EXPECT_EQ(storage->findById(QUuid::createUuid()), nullptr);
    ghost->setDeletedAt(Timestamp{760'000'000});
    EXPECT_EQ(storage->fetch(&Block::isLive), (std::vector{first, last}));
    scheduler.advance(1s);
    EXPECT_EQ(close(), QStringList{persisted(3)});
    EXPECT_EQ(QFileInfo(path).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(QFileInfo(QFileInfo(path).path()).permissions() & (QFile::ExeGroup | QFile::ExeOther),
              QFile::Permissions());
    EXPECT_TRUE(fileContent().contains("\"deleted_at\":760000000"));

    open();
    EXPECT_EQ(log.take(), QStringList{loaded(2, 1)});
    EXPECT_EQ(texts(), (QStringList{u"first"_qs, u"last"_qs}));
    EXPECT_FALSE(storage->blocks().front()->needsSync());
    EXPECT_EQ(storage->blocks().front()->stickyColor(), u"yellow"_qs);
    scheduler.advance(1s);
    EXPECT_EQ(close(), QStringList{persisted(2)}) << "a purge is written without being asked";

    open();
    EXPECT_EQ(scheduler.pendingCalls(), 0U) << "a file without ghosts is not written again";
}

TEST_F(BlockStorageTest, ABurstOfRequestsIsOneWriteAndPokesTheSyncEachTime) {
    open();
    int pokes = 0;
    storage->setSyncTrigger([&pokes] { ++pokes; });
    const auto block = insertText(u"a"_qs);
    scheduler.advance(300ms);
    block->setRawText(u"ab"_qs);
    storage->save();
    EXPECT_EQ(pokes, 2);
    scheduler.advance(999ms);
    EXPECT_EQ(scheduler.pendingCalls(), 1U);
    scheduler.advance(1ms);
    block->setRawText(u"after the snapshot"_qs);
    EXPECT_EQ(close(), QStringList{persisted(1)});
    EXPECT_TRUE(fileContent().contains("\"raw_text\":\"ab\""));
}

TEST_F(BlockStorageTest, OnlyChangedBlocksNeedToBeToldApartInLaterSaves) {
    open();
    for (int number = 0; number < 600; ++number) {
        insertText(QString::number(number));
    }
    scheduler.advance(1s);
    open();
    storage->blocks()[300]->setRawText(u"changed"_qs);
    insertText(u"added"_qs);
    scheduler.advance(1s);
    open();
    EXPECT_EQ(texts().at(299), u"299"_qs);
    EXPECT_EQ(texts().at(300), u"changed"_qs);
    EXPECT_EQ(texts().at(600), u"added"_qs);
}

TEST_F(BlockStorageTest, ARequestThatStillWaitsAtTheEndIsDropped) {
    open();
    insertText(u"too late"_qs);
    scheduler.advance(999ms);
    const auto survivor = storage->blocks().front();
    EXPECT_EQ(close(), QStringList());
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
    EXPECT_FALSE(QFile::exists(path));
    survivor->setRawText(u"outlives the store"_qs);
}

TEST_F(BlockStorageTest, WithoutAPlaceNothingIsReadOrWritten) {
    BlockStorage homeless(scheduler, std::nullopt);
    homeless.insert(Block::text(kUserId, {}, {}));
    scheduler.advance(2s);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(BlockStorageTest, SanitizingAdoptsAndFlagsWhatNeedsIt) {
    open();
    const auto own = insertText(u"own"_qs);
    const auto foreign = insertText(u"foreign"_qs);
    const auto unsent = insertText(u"unsent"_qs);
    for (const auto &block : {own, foreign}) {
        block->setSyncedAt(Timestamp{1});
    }
    for (const auto &block : storage->blocks()) {
        block->setNeedsSync(false);
    }
    foreign->setUserId(QUuid::createUuid());
    scheduler.advance(1s);

    storage->sanitizeBlocks(kUserId);
    EXPECT_FALSE(own->needsSync());
    EXPECT_TRUE(foreign->needsSync() && unsent->needsSync());
    EXPECT_EQ(foreign->userId(), kUserId);
    EXPECT_EQ(scheduler.pendingCalls(), 1U);
    scheduler.advance(1s);
    storage->sanitizeBlocks(kUserId);
    EXPECT_EQ(scheduler.pendingCalls(), 0U) << "nothing is left to change";
    EXPECT_TRUE(close().contains(u"[BlockStorage] 🧹 Sanitized and flagged 2 blocks for sync"_qs));
}

TEST_F(BlockStorageTest, AFileThatCannotBeReadIsKeptUnderAnotherName) {
    const QString kept = path + u".unreadable-20250131-070640";
    putFile("[{\"id\":7}]");
    open();
    EXPECT_TRUE(storage->blocks().empty());
    EXPECT_EQ(log.take(), QStringList{u"[BlockStorage] ❌ Load failed: record 0: \"id\" is no UUID"_qs});
    scheduler.advance(5s);
    EXPECT_EQ(fileContent(), "[{\"id\":7}]") << "until the next save it stays where it is";
    QFile(kept).open(QFile::WriteOnly);

    insertText(u"new"_qs);
    scheduler.advance(1s);
    storage->save();
    scheduler.advance(1s);
    EXPECT_EQ(
        close(),
        (QStringList{u"[BlockStorage] 🗄️ Kept the unreadable file as blocks.json.unreadable-20250131-070640-2"_qs,
                     persisted(1), persisted(1)}));
    EXPECT_TRUE(fileContent().contains("\"raw_text\":\"new\""));
    path = kept + u"-2";
    EXPECT_EQ(fileContent(), "[{\"id\":7}]");
    path = kept;
    EXPECT_EQ(fileContent(), QByteArray()) << "what had the name before is not touched";
}

TEST_F(BlockStorageTest, BehindALinkItIsTheUnreadableFileThatIsKept) {
    putFile({});
    const QString real = folder.file(u"real.json"_qs);
    ASSERT_TRUE(QFile::rename(path, real) && QFile::link(real, path));
    putFile("broken");
    open();
    insertText(u"new"_qs);
    scheduler.advance(1s);
    storage.reset();
    EXPECT_TRUE(QFileInfo(path).isSymLink() && fileContent().contains("\"raw_text\":\"new\""));
    path += u".unreadable-20250131-070640";
    EXPECT_EQ(fileContent(), "broken");
}

TEST_F(BlockStorageTest, EvenAFolderInPlaceOfTheFileIsSetAside) {
    ASSERT_TRUE(QDir().mkpath(path + u"/inside"));
    open();
    insertText(u"new"_qs);
    scheduler.advance(1s);
    storage.reset();
    EXPECT_TRUE(QDir(path + u".unreadable-20250131-070640/inside").exists());
    EXPECT_TRUE(fileContent().contains("\"raw_text\":\"new\""));
}

TEST_F(BlockStorageTest, WhatCannotBeSetAsideIsNotWrittenOver) {
    path = folder.file(QString(240, u'n')); // Leaves no room for a longer name.
    putFile("broken");
    open();
    insertText(u"new"_qs);
    scheduler.advance(1s);
    const QStringList said = close();
    ASSERT_EQ(said.size(), 2);
    EXPECT_TRUE(
        said.back().startsWith(u"[BlockStorage] ❌ Background save failed: cannot set aside the unreadable "_qs));
    EXPECT_EQ(fileContent(), "broken");
}

TEST_F(BlockStorageTest, AFailedSaveIsSaidInOneLine) {
    open();
    const QString parent = QFileInfo(path).path();
    QFile obstacle(parent);
    ASSERT_TRUE(obstacle.open(QFile::WriteOnly));
    insertText(u"kept in memory"_qs);
    scheduler.advance(1s);
    const QStringList said = close();
    ASSERT_EQ(said.size(), 1);
    EXPECT_TRUE(
        said.back().startsWith(u"[BlockStorage] ❌ Background save failed: cannot create a file beside "_qs + path));
}

TEST_F(BlockStorageTest, EditsAreGatheredBeforeTheyReachTheStore) {
    open();
    DebouncedSaver saver(scheduler, *storage);
    QStringList ran;
    int requests = 0;
    storage->setSyncTrigger([&requests] { ++requests; });
    saver.requestSave([&ran] { ran << u"first"_qs; });
    scheduler.advance(400ms);
    saver.requestSave([&ran] { ran << u"second"_qs; });
    scheduler.advance(400ms);
    saver.requestSave();
    scheduler.advance(499ms);
    EXPECT_EQ(requests, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(ran, QStringList{u"second"_qs});
    EXPECT_EQ(requests, 1);
    saver.requestSave();
    scheduler.advance(500ms);
    EXPECT_EQ(ran.size(), 1) << "an action runs once";
    EXPECT_EQ(requests, 2);
    {
        DebouncedSaver(scheduler, *storage).requestSave([&ran] { ran << u"late"_qs; });
    }
    scheduler.advance(1s);
    EXPECT_EQ(ran.size(), 1);
}

} // namespace tallowby
