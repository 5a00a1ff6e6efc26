#include "model/AnyCodable.h"
#include "platform/AppEvents.h"
#include "platform/NotificationCenter.h"
#include "sync/SearchViewModel.h"
#include "sync/SyncFixture.h"

#include <random>

namespace tallowby::test {

namespace {

/// What a search has to find, one block after the other.
QStringList plainPass(const BlockStorage &storage, const QString &query) {
    QStringList found;
    for (const BlockPtr &block : storage.blocks()) {
        bool isMatch = block->rawTextOrEmpty().contains(query, Qt::CaseInsensitive);
        if (block->blockType() == BlockType::checklist) {
            for (const ChecklistItemPtr &item : block->checklistItems()) {
                isMatch = isMatch || item->text().contains(query, Qt::CaseInsensitive);
            }
        } else if (block->blockType() == BlockType::table) {
            for (const QStringList &row : block->tableData()) {
                isMatch = isMatch || row.join(u'\n').contains(query, Qt::CaseInsensitive);
            }
        }
        if (isMatch && block->isLive()) {
            found << block->id().toString();
        }
    }
    return found;
}

class SearchTest : public SyncFixture {
protected:
    NotificationCenter notifications;
    SearchViewModel search{storage, embeddings, notifications, scheduler};

    BlockPtr addTable(const std::vector<QStringList> &cells) {
        auto block = Block::table(QUuid(), {});
        block->setTableData(cells);
        storage.insert(block);
        return block;
    }
    BlockPtr addChecklist(const QStringList &items) {
        auto block = std::make_shared<Block>(QUuid(), BlockType::checklist, QRectF(0, 0, 10, 10));
        setItems(*block, items);
        storage.insert(block);
        return block;
    }
    static void setItems(Block &block, const QStringList &texts) {
        std::vector<ChecklistItemPtr> items;
        for (const QString &text : texts) {
            items.push_back(std::make_shared<ChecklistItem>(QUuid::createUuid(), text));
        }
        block.setChecklistItems(items);
    }
    [[nodiscard]] QStringList found() const {
        QStringList ids;
        for (const SharedBlockFields &fields : search.results()) {
            ids << fields->id.toString();
        }
        return ids;
    }
    static QStringList idsOf(const std::vector<BlockPtr> &blocks) {
        QStringList ids;
        for (const BlockPtr &block : blocks) {
            ids << block->id().toString();
        }
        return ids;
    }
    void type(const QString &text) {
        search.setSearchText(text);
        scheduler.advance(500ms);
    }
};

} // namespace

TEST_F(SearchTest, FindsWordsWhereverTheyStandWhateverTheirCase) {
    const auto note = add(u"Notes of the meeting"_qs);
    const auto list = addChecklist({u"milk"_qs, u"prepare Meeting"_qs});
    const auto table = addTable({{u"day"_qs, u"what"_qs}, {u"Monday"_qs, u"MEETING room"_qs}});
    const auto gone = add(u"an old meeting"_qs);
    gone->setDeletedAt(now());
    add(u"unrelated"_qs);
    type(u"MEETING"_qs);
    EXPECT_EQ(found(), idsOf({note, list, table}));
    EXPECT_EQ(search.errorMessage(), QString());

    // What has changed since is found as it is now.
    note->setRawText(u"Über die Straße"_qs);
    setItems(*list, {u"bread"_qs});
    type(u"meeting r"_qs);
    EXPECT_EQ(found(), idsOf({table}));
    type(u"ÜBER DIE"_qs);
    EXPECT_EQ(found(), idsOf({note}));
    // Nothing spans two cells, nor a letter that stands for none.
    type(u"what monday"_qs);
    EXPECT_TRUE(found().isEmpty());
}

TEST_F(SearchTest, OneSearchForAWordAndNoneForNothing) {
    int searches = 0;
    QObject::connect(&search, &SearchViewModel::resultsChanged, [&searches] { ++searches; });
    const auto note = add(u"today"_qs);
    search.setSearchText(u"to"_qs);
    scheduler.advance(400ms);
    search.setSearchText(u"tod"_qs);
    scheduler.advance(499ms);
    EXPECT_EQ(searches, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(search.answeredText(), u"tod");
    // Back to what was searched for: not again.
    search.setSearchText(u"toda"_qs);
    type(u"tod"_qs);
    EXPECT_EQ(searches, 1);

    search.setSearchText({});
    EXPECT_TRUE(search.results().empty());
    EXPECT_EQ(searches, 2);

    search.setSearchText(u"TODAY"_qs);
    search.searchNow();
    EXPECT_EQ(found(), idsOf({note}));
}

TEST_F(SearchTest, WhatTheBackendFindsComesAfterWhatIsHereAndNothingTwice) {
    start();
    const auto near = add(u"a cat"_qs);
    const auto far = add(u"a tiger"_qs);
    scheduler.advance(1s);
    QByteArrayList rows;
    for (const BlockPtr &block : {near, far}) {
        const auto request = backend::upsertBlock(config, {kKey, QUuid(userId())}, *block->fields());
        rows << std::get<HttpRequest>(request).body;
    }
    backend.searchAnswer = '[' + rows.join(',') + ']';
    search.setSyncEngine(engine.get());
    backend.fate = [](const HttpRequest &) { return FakeBackend::Fate{.delay = 2s}; };
    type(u"cat"_qs);
    EXPECT_EQ(found(), idsOf({near}));
    EXPECT_TRUE(search.isSearching());
    scheduler.advance(2s);
    EXPECT_EQ(found(), idsOf({near, far}));
    EXPECT_FALSE(search.isSearching());

    // An answer that comes when something else is asked for already is no answer.
    type(u"cat"_qs + u' ');
    type(u"tiger"_qs);
    EXPECT_EQ(found(), idsOf({far}));
    scheduler.advance(1500ms);
    EXPECT_EQ(found(), idsOf({far}));
    scheduler.advance(1s);
    EXPECT_EQ(found(), idsOf({far, near}));
    type(u"zebra"_qs);
    search.setSearchText({});
    scheduler.advance(5s);
    EXPECT_TRUE(search.results().empty());
    EXPECT_FALSE(search.isSearching());
}

TEST_F(SearchTest, WithoutABackendOnlyAnEmptyAnswerIsAnError) {
    add(u"here"_qs);
    type(u"here"_qs);
    EXPECT_EQ(search.errorMessage(), QString());
    EXPECT_EQ(linesWith(u"[SearchViewModel]"_qs),
              QStringList{
                  u"[SearchViewModel] Semantic search failed, staying with local results: Authentication required"_qs});
    type(u"nowhere"_qs);
    EXPECT_EQ(search.errorMessage(), u"Search failed. Please try again.");

    start();
    search.setSyncEngine(engine.get());
    answerAll(HttpResponse{500, {}, {}, {}});
    type(u"not here either"_qs);
    EXPECT_EQ(search.errorMessage(), u"Search failed. Please try again.");
    backend.fate = nullptr;
    type(u"nothing at all"_qs);
    EXPECT_EQ(search.errorMessage(), QString());
    answerAll(HttpResponse{500, {}, {}, {}});
    type(u"once more"_qs);
    search.setSearchText({});
    EXPECT_EQ(search.errorMessage(), QString());
}

TEST_F(SearchTest, AChosenResultIsGoneTo) {
    const auto note = add(u"there"_qs);
    note->setXPosition(12.5);
    note->setYPosition(-3);
    QVariantMap posted;
    const auto observation = notifications.observe(
        u"jumpToBlock"_qs, [&posted](const Notification &notification) { posted = notification.userInfo; });
    type(u"there"_qs);
    search.selectResult(*search.results().front());
    EXPECT_EQ(posted, (QVariantMap{{u"x"_qs, 12.5}, {u"y"_qs, -3.0}, {u"id"_qs, note->id()}}));
}

TEST_F(SearchTest, TheIndexFindsWhatAPlainPassFinds) {
    std::mt19937 random(7);
    const auto chance = [&random](unsigned of) { return random() % of; };
    const auto word = [&chance] {
        static const QStringList kWords{u"Ab"_qs, u"abA"_qs, u"ba"_qs, u"É"_qs, u"éa"_qs, u"x"_qs, u" "_qs, u"日本"_qs};
        QString text;
        for (unsigned words = chance(6); words > 0; --words) {
            text += kWords.at(int(chance(unsigned(kWords.size()))));
        }
        return text;
    };
    SearchIndex index(storage);
    for (int step = 0; step < 3000; ++step) {
        const auto &blocks = storage.blocks();
        const BlockPtr some = blocks.empty() ? nullptr : blocks[chance(unsigned(blocks.size()))];
        switch (chance(8)) {
        case 0:
            addChecklist({word(), word()});
            break;
        case 1:
            addTable({{word(), word()}, {word()}});
            break;
        case 2:
            add(word());
            break;
        case 3:
            if (some) {
                some->setRawText(word().repeated(chance(100) == 0 ? 20'000 : 1));
            }
            break;
        case 4:
            if (some) {
                some->setDeletedAt(some->isLive() ? std::optional(now()) : std::nullopt);
            }
            break;
        case 5:
            index.prepare(chance(20));
            break;
        default:
            if (const QString query = word(); !query.isEmpty()) {
                QStringList found;
                for (const SharedBlockFields &fields : index.find(query)) {
                    found << fields->id.toString();
                }
                ASSERT_EQ(found, plainPass(storage, query)) << "step " << step << ": " << qPrintable(query);
            }
        }
    }
}

} // namespace tallowby::test
