#include "storage/file/BlockFile.h"
#include "storage/file/BlockFileReader.h"
#include "support/TemporaryFolder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <sys/stat.h>

namespace tallowby {

namespace {

std::vector<SharedBlockFields> records(std::size_t count, const QByteArray &content) {
    std::vector<SharedBlockFields> all;
    for (std::size_t place = 0; place < count; ++place) {
        auto &fields = all.emplace_back(new BlockFields);
        fields->id = QUuid::createUuid();
        fields->zIndex = std::int64_t(place);
        fields->content = content;
        if (place % 10 == 9) {
            fields->deletedAt = Timestamp{double(place)};
        }
    }
    return all;
}

BlockFileContent read(const QString &path) {
    return readBlockFile(path, DeletedRecords::leaveOut);
}

void write(const QString &path, const std::vector<SharedBlockFields> &records) {
    QFile::remove(path);
    const auto outcome = BlockFile(path).write(RecordPages(records).snapshot({}), {});
    ASSERT_EQ(std::get<BlockFile::Change>(outcome), BlockFile::Change::written);
}

std::optional<QString> refusal(const QString &path) {
    const auto content = read(path);
    const auto *unreadable = std::get_if<UnreadableBlockFile>(&content);
    return unreadable ? std::optional(unreadable->reason) : std::nullopt;
}

} // namespace

TEST(BlockFile, LargeFilesReadTheSameWhereverTheirMiddleLies) {
    // The end of one element and the start of the next look like the seam between two records.
    const QByteArray item = R"({"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8","user_id":"},{\"id\":\""})";
    const QByteArray fewItems = R"({"items":[)" + item + ',' + item + "]}";
    const QByteArray manyItems = R"({"items":[)" + QByteArray(item + ',').repeated(80'000) + item + "]}";
    const test::TemporaryFolder folder;
    const QString path = folder.file(u"blocks.json"_qs);
    for (const auto &all : {records(15'000, fewItems), records(1, manyItems), records(3, manyItems)}) {
        write(path, all);
        ASSERT_GT(QFileInfo(path).size(), 5'000'000);
        const auto content = read(path);
        const auto *loaded = std::get_if<LoadedBlocks>(&content);
        ASSERT_TRUE(loaded);
        EXPECT_EQ(loaded->purgedCount, all.size() / 10);
        ASSERT_EQ(loaded->records.size(), all.size() - all.size() / 10);
        for (std::size_t next = 0; const auto &fields : loaded->records) {
            next += next % 10 == 9 ? 1 : 0;
            ASSERT_EQ(fields->id, all[next]->id);
            ASSERT_EQ(fields->content, all[next]->content);
            ++next;
        }
    }
}

TEST(BlockFile, ABadRecordInALargeFileIsNamed) {
    const test::TemporaryFolder folder;
    const QString path = folder.file(u"blocks.json"_qs);
    write(path, records(20'000, "{}"));
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::ReadWrite));
    QByteArray bytes = file.readAll();
    bytes.replace("\"z_index\":15000,", "\"z_index\":\"15000\",");
    ASSERT_TRUE(file.resize(0) && file.seek(0) && file.write(bytes) == bytes.size());
    file.close();
    EXPECT_EQ(refusal(path), u"record 15000: \"z_index\" is no whole number of 64 bits"_qs);
}

TEST(BlockFile, OnlyAMissingFileCountsAsNone) {
    const test::TemporaryFolder folder;
    EXPECT_TRUE(std::holds_alternative<std::monostate>(read(folder.file(u"none.json"_qs))));
    EXPECT_EQ(refusal(folder.path()), u"it is no ordinary file"_qs);
    const QString pipe = folder.file(u"pipe"_qs);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(refusal(pipe), u"it is no ordinary file"_qs);
    EXPECT_TRUE(std::holds_alternative<FileProblem>(read(pipe + u"/below"))) << "what it holds is not known";
}

TEST(BlockFile, ANumberThatIsNotFiniteCostsThatNumberOnly) {
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    const BlockPtr made = std::make_shared<Block>(QUuid(), BlockType::text, QRectF(kNoNumber, 1, HUGE_VAL, 2));
    EXPECT_EQ(made->xPosition(), 0);
    EXPECT_EQ(made->width(), 0);
    auto all = records(3, "{}");
    all[1]->rotation = kNoNumber;
    all[1]->updatedAt = Timestamp{HUGE_VAL};
    all[1]->syncedAt = Timestamp{-HUGE_VAL};
    all[1]->embedding = {1.0F, std::numeric_limits<float>::infinity()};
    all[1]->rawText = u"kept"_qs;
    const test::TemporaryFolder folder;
    const QString path = folder.file(u"blocks.json"_qs);
    write(path, all);
    const auto content = read(path);
    const auto &loaded = std::get<LoadedBlocks>(content).records;
    ASSERT_EQ(loaded.size(), 3U);
    EXPECT_EQ(loaded[1]->rawText, u"kept"_qs);
    EXPECT_EQ(loaded[1]->rotation, 0);
    EXPECT_EQ(loaded[1]->embedding, (std::vector{1.0F, 0.0F}));
}

TEST(RecordPages, ASnapshotRebuildsTheChangedPagesOnly) {
    std::vector<BlockPtr> blocks;
    for (std::size_t place = 0; place < RecordPages::kPageSize * 2 + 1; ++place) {
        blocks.push_back(Block::divider(QUuid(), {}));
    }
    std::vector<SharedBlockFields> loaded;
    std::ranges::transform(blocks, std::back_inserter(loaded), &Block::fields,
                           [](const auto &block) -> Block & { return *block; });
    RecordPages pages(std::move(loaded));
    const auto before = pages.snapshot(blocks);

    blocks[300]->setXPosition(7);
    pages.markChanged(300);
    blocks.push_back(Block::divider(QUuid(), {}));
    pages.markChanged(blocks.size() - 1);
    const auto after = pages.snapshot(blocks);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(before[1]->at(44)->xPosition, 0);
    EXPECT_EQ(after[1]->at(44)->xPosition, 7);
    EXPECT_EQ(before[2]->size(), 1U);
    EXPECT_EQ(after[2]->size(), 2U);
    EXPECT_EQ(pages.snapshot(blocks), after);
}

} // namespace tallowby
