#include "storage/BlockStorage.h"
#include "storage/DataFolderLock.h"
#include "storage/DebouncedSaver.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

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
    [[nodiscard]] bool becomes(SaveStatus::State state) {
        return test::waitUntil([&] { return storage->status().state() == state; });
    }
    [[nodiscard]] bool says(const QString &line) {
        return test::waitUntil([&] { return log.lines().contains(line); });
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
    ASSERT_TRUE(says(persisted(1)));
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

TEST_F(BlockStorageTest, WhatStillWaitsAtTheEndIsWritten) {
    open();
    DebouncedSaver saver(scheduler, *storage);
    const auto survivor = insertText(u"a"_qs);
    saver.requestSave([&] { survivor->setRawText(u"typed at the last moment"_qs); });
    saver.flush();
    saver.flush();
    EXPECT_EQ(close(), QStringList{persisted(1)});
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
    EXPECT_TRUE(fileContent().contains("typed at the last moment"));
    survivor->setRawText(u"outlives the store"_qs);
}

TEST_F(BlockStorageTest, NothingIsWrittenThatStandsThereAlready) {
    open();
    const auto block = insertText(u"same"_qs);
    storage->saveNow();
    open();
    std::ignore = log.take();
    const auto same = storage->blocks().front();
    storage->save();
    scheduler.advance(1s);
    same->setXPosition(7);
    same->setStickyColor(u"blue"_qs);
    same->setXPosition(0);
    storage->saveNow();
    EXPECT_EQ(log.take(), QStringList()) << "it was changed and changed back, and the colour is in no record";
    ASSERT_TRUE(QFile::remove(path));
    same->setXPosition(8);
    same->setXPosition(0);
    storage->saveNow();
    EXPECT_EQ(log.take(), QStringList{persisted(1)}) << "unless somebody has taken the file away";
}

TEST_F(BlockStorageTest, ManyRequestsDuringAWriteAreOneWriteOfTheLatest) {
    open();
    const auto block = insertText(u"0"_qs);
    scheduler.advance(1s);
    for (int number = 1; number <= 5; ++number) {
        block->setRawText(QString::number(number)); // The answer of the first write has not been heard yet.
        storage->save();
        scheduler.advance(1s);
    }
    EXPECT_EQ(close(), (QStringList{persisted(1), persisted(1)}));
    EXPECT_TRUE(fileContent().contains("\"raw_text\":\"5\""));
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

    EXPECT_EQ(storage->status().state(), SaveStatus::State::keptAside);
    EXPECT_FALSE(storage->isComplete());
    const auto block = insertText(u"new"_qs);
    storage->saveNow();
    block->setIsBold(true);
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
    EXPECT_TRUE(
        said.back().startsWith(u"[BlockStorage] ❌ Background save failed: cannot set aside the unreadable "_qs));
    EXPECT_EQ(fileContent(), "broken");
}

TEST_F(BlockStorageTest, AFailedSaveIsSaidAndTriedAgainUntilItSucceeds) {
    open();
    const QString parent = QFileInfo(path).path();
    ASSERT_TRUE(QFile(parent).open(QFile::WriteOnly));
    insertText(u"kept in memory"_qs);
    scheduler.advance(1s);
    ASSERT_TRUE(becomes(SaveStatus::State::notSaved));
    EXPECT_EQ(storage->status().text(), u"Notes cannot be saved: the folder cannot be reached. Trying again…"_qs);
    for (const auto wait : {2s, 4s, 8s, 16s, 32s, 60s, 60s}) {
        ASSERT_EQ(scheduler.pendingCalls(), 1U);
        const auto tries = log.lines().size();
        scheduler.advance(wait - 1ms);
        EXPECT_EQ(scheduler.pendingCalls(), 1U) << wait.count();
        scheduler.advance(1ms);
        ASSERT_TRUE(test::waitUntil([&] { return log.lines().size() > tries && scheduler.pendingCalls() == 1; }));
    }
    const QStringList said = log.take();
    EXPECT_EQ(said.size(), 8);
    EXPECT_TRUE(
        said.back().startsWith(u"[BlockStorage] ❌ Background save failed: cannot create a file beside "_qs + path));
    ASSERT_TRUE(QFile::remove(parent));
    scheduler.advance(60s);
    EXPECT_TRUE(becomes(SaveStatus::State::good));
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
    EXPECT_EQ(close(), QStringList{persisted(1)});
}

TEST_F(BlockStorageTest, AFileThatCannotBeReachedIsWaitedForAndJoinedWithWhatWasMadeMeanwhile) {
    open();
    const auto known = insertText(u"known"_qs);
    close();
    const QString parent = QFileInfo(path).path();
    const QString away = folder.file(u"away"_qs);
    const auto takeAway = [&] { return QDir().rename(parent, away) && QFile(parent).open(QFile::WriteOnly); };
    const auto bringBack = [&] { return QFile::remove(parent) && QDir().rename(away, parent); };
    ASSERT_TRUE(takeAway());
    open();
    EXPECT_EQ(storage->status().text(), u"Notes cannot be read: the folder cannot be reached. Trying again…"_qs);
    EXPECT_FALSE(storage->isComplete());
    insertText(u"meanwhile"_qs);
    scheduler.advance(1s);
    int merged = 0;
    QObject::connect(storage.get(), &BlockStorage::blocksMerged, [&merged] { ++merged; });
    ASSERT_TRUE(bringBack());
    scheduler.advance(1s);
    ASSERT_TRUE(becomes(SaveStatus::State::good));
    EXPECT_EQ(merged, 1);
    EXPECT_EQ(texts(), (QStringList{u"meanwhile"_qs, u"known"_qs}));
    close();
    open();
    EXPECT_EQ(storage->blocks().size(), 2U);

    // Not even until the end: kept beside the file, and joined by the next start.
    close();
    const QString link = path + u".real";
    ASSERT_TRUE(QFile::rename(path, link) && QFile::link(path + u"/nowhere", path + u".loop"));
    ASSERT_TRUE(QFile::rename(path + u".loop", path)); // A link that leads through itself.
    open();
    EXPECT_EQ(storage->status().state(), SaveStatus::State::notRead);
    insertText(u"until the end"_qs);
    close();
    ASSERT_TRUE(QFile::remove(path) && QFile::rename(link, path));
    open();
    EXPECT_EQ(storage->blocks().size(), 3U);
    EXPECT_TRUE(QFile::exists(path + u".unjoined"));
    close();
    EXPECT_FALSE(QFile::exists(path + u".unjoined"));
    EXPECT_TRUE(fileContent().contains("until the end"));
}

TEST_F(BlockStorageTest, TwoStoresOnOneFileLoseNothingOfEachOther) {
    open();
    const auto shared = insertText(u"shared"_qs);
    const auto thrownAway = insertText(u"thrown away"_qs);
    storage->saveNow();
    BlockStorage other(scheduler, path);
    const auto later = [&](double seconds) { return Timestamp{shared->updatedAt().secondsSinceReference + seconds}; };
    const auto theirs = other.findById(shared->id());
    theirs->setRawText(u"changed there"_qs);
    theirs->setFontSize(30);
    theirs->setUpdatedAt(later(2));
    other.findById(thrownAway->id())->setDeletedAt(later(3));
    other.insert(Block::text(kUserId, {}, u"made there"_qs));
    other.saveNow();

    shared->setRawText(u"changed here, but before"_qs);
    shared->setUpdatedAt(later(1));
    insertText(u"made here"_qs);
    storage->saveNow();
    EXPECT_EQ(shared->rawText(), u"changed there"_qs);
    EXPECT_EQ(shared->fontSize(), 30);
    EXPECT_TRUE(shared->needsSync());
    EXPECT_FALSE(thrownAway->isLive());
    EXPECT_EQ(texts(), (QStringList{u"changed there"_qs, u"thrown away"_qs, u"made here"_qs, u"made there"_qs}));

    theirs->setRawText(u"and once more"_qs);
    theirs->setUpdatedAt(later(4));
    other.saveNow();
    EXPECT_EQ(other.blocks().size(), 4U);
    scheduler.advance(1s);
    open();
    EXPECT_EQ(texts(), (QStringList{u"and once more"_qs, u"made there"_qs, u"made here"_qs}));

    putFile("no notes");
    insertText(u"after that"_qs);
    close();
    EXPECT_TRUE(fileContent().contains("after that"));
    path += u".other-20250131-070641";
    EXPECT_EQ(fileContent(), "no notes");
}

TEST_F(BlockStorageTest, AFileThatWasSetAsideCanBeRepairedAndReadAgain) {
    open();
    insertText(u"old"_qs);
    close();
    const QByteArray whole = fileContent();
    putFile(whole.chopped(1));
    open();
    insertText(u"new"_qs);
    storage->saveNow();
    QString why;
    QObject::connect(storage.get(), &BlockStorage::keptAsideUnreadable,
                     [&why](const QString &reason) { why = reason; });
    storage->readKeptAside();
    EXPECT_TRUE(test::waitUntil([&] { return !why.isEmpty(); }));

    const QString place = path;
    path += u".unreadable-20250131-070640";
    putFile(whole);
    storage->readKeptAside();
    ASSERT_TRUE(becomes(SaveStatus::State::good));
    EXPECT_TRUE(storage->isComplete());
    EXPECT_FALSE(QFile::exists(path));
    close();
    path = place;
    open();
    EXPECT_EQ(texts(), (QStringList{u"new"_qs, u"old"_qs}));
}

TEST(DataFolderLock, OneProgramHasAFolderAndADeadOneHasNone) {
    const test::TemporaryFolder folder;
    DataFolderLock lock(folder.path());
    ASSERT_EQ(lock.take(), DataFolderLock::Outcome::taken);
    DataFolderLock second(folder.path());
    EXPECT_EQ(second.take(), DataFolderLock::Outcome::heldByOther);
    EXPECT_EQ(second.holder().process, QCoreApplication::applicationPid());
    EXPECT_EQ(second.takeFromElsewhere(), DataFolderLock::Outcome::heldByOther) << "it is here, and alive";
    EXPECT_EQ(DataFolderLock(folder.file(u"missing"_qs)).take(), DataFolderLock::Outcome::unavailable);

    const test::TemporaryFolder left;
    const auto leave = [&left](const QString &computer) {
        QFile file(left.file(u"lock"_qs));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(QString(u"999999999\ntallowby\n" + computer + u'\n').toUtf8());
    };
    DataFolderLock next(left.path());
    leave(u"another.computer"_qs);
    EXPECT_EQ(next.take(), DataFolderLock::Outcome::heldByOther) << "nobody here can look whether it lives";
    EXPECT_TRUE(next.holder().isElsewhere);
    EXPECT_EQ(next.takeFromElsewhere(), DataFolderLock::Outcome::taken);
    next = DataFolderLock(left.path());
    leave(QSysInfo::machineHostName());
    EXPECT_EQ(next.take(), DataFolderLock::Outcome::taken);
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
