#include "blocks/CanvasDriver.h"
#include "blocks/checklist/ChecklistBlockContent.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

namespace tallowby {

namespace {

struct Checklists : testing::Test {
    /// At (100, 100) on the screen, 280 points wide.
    BlockPtr add(const QByteArray &content) {
        const BlockPtr block = canvas.add(BlockType::checklist, {-300, -200, 280, 40});
        block->setContent(content);
        canvas.settle();
        return block;
    }
    /// Each item with a mark when it is done.
    QStringList items(const BlockPtr &block) {
        QStringList result;
        for (const ChecklistItemPtr &item : block->checklistItems()) {
            result << (item->isDone() ? QStringLiteral("+") : QString()) + item->text();
        }
        return result;
    }
    void open(const BlockPtr &block) {
        canvas.model.beginEditing(block);
        canvas.settle();
    }
    ChecklistBlockContent &body(const BlockPtr &block) {
        return dynamic_cast<ChecklistBlockContent &>(*canvas.containers().at(block.get())->body());
    }

    test::CanvasDriver canvas;
    const QByteArray threeItems =
        R"({"future":1.5,"items":[{"id":"a","text":"one","isDone":true,"due":7},{"text":"two"},{"text":"three"}]})";
};

TEST_F(Checklists, KeysMakeWalkAndRemoveItems) {
    const BlockPtr block = add(R"({"title":"","items":[{"text":""}]})");
    open(block);
    canvas.type(QStringLiteral("milkeggs"));
    for (int i = 0; i < 4; ++i) {
        canvas.press(Qt::Key_Left);
    }
    canvas.press(Qt::Key_Return);
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("milk"), QStringLiteral("eggs")}));
    canvas.press(Qt::Key_End);
    canvas.press(Qt::Key_Return);
    EXPECT_EQ(items(block).size(), 3);
    canvas.press(Qt::Key_Backspace);
    canvas.type(QStringLiteral("!"));
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("milk"), QStringLiteral("eggs!")}));
    canvas.press(Qt::Key_Up);
    canvas.type(QStringLiteral("?"));
    canvas.press(Qt::Key_Up);
    canvas.type(QStringLiteral("Food"));
    EXPECT_EQ(block->checklistTitle(), QStringLiteral("Food"));
    canvas.press(Qt::Key_Down);
    canvas.press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("eggs!"), QStringLiteral("milk?")}));
    EXPECT_TRUE(block->needsSync());
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
}

TEST_F(Checklists, SeveralPastedLinesAreSeveralItems) {
    const BlockPtr block = add(R"({"items":[{"text":"ab"}]})");
    open(block);
    canvas.press(Qt::Key_Left);
    QGuiApplication::clipboard()->setText(QStringLiteral("- [ ] x\r\n\n* y\n\u2022 z"));
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    canvas.type(QStringLiteral("|"));
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("ax"), QStringLiteral("y"), QStringLiteral("z|b")}));
}

TEST_F(Checklists, ThePointerChecksAddsDeletesAndReorders) {
    const BlockPtr block = add(threeItems);
    const BlockPtr noteAbove = canvas.add(BlockType::text, {0, 0, 100, 24}, QStringLiteral("above"));
    canvas.settle();
    EXPECT_EQ(body(block).progress(), QStringLiteral("1 of 3"));
    const double height = block->height();
    const auto row = [](int item, double x) { return QPointF(100 + x, 100 + 36 + 28 * item + 14); };
    canvas.click(row(1, 26));
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("+one"), QStringLiteral("+two"), QStringLiteral("three")}));
    EXPECT_FALSE(block->isSelected() || canvas.model.isAnyBlockEditing());
    EXPECT_EQ(block->content(), QByteArrayLiteral(R"({"future":1.5,"items":[{"id":"a","text":"one","isDone":true,)"
                                                  R"("due":7},{"text":"two","isDone":true},{"text":"three"}]})"));
    open(block);
    canvas.drag(row(0, 6), row(2, 6));
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("+two"), QStringLiteral("three"), QStringLiteral("+one")}));
    canvas.click(row(0, 280 - 20));
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("three"), QStringLiteral("+one")}));
    EXPECT_EQ(block->height(), height - 28) << "the block is as high as its items";
    canvas.click(row(0, 60));
    canvas.type(QStringLiteral("*"));
    EXPECT_TRUE(items(block).front().contains(u'*'));
    canvas.press(Qt::Key_Escape);
    canvas.model.deselectAll();
    canvas.click(row(2, 200));
    EXPECT_EQ(items(block).size(), 2) << "beside the words nothing is meant but the block";
    EXPECT_TRUE(block->isSelected());
    EXPECT_EQ(body(block).cursorAt({200, 36 + 28 * 2 + 14}, {}), std::nullopt);
    EXPECT_EQ(body(block).cursorAt({60, 36 + 28 * 2 + 14}, {}), Qt::PointingHandCursor);
    canvas.click(row(2, 60));
    canvas.type(QStringLiteral("new"));
    EXPECT_EQ(items(block).back(), QStringLiteral("new"));
    EXPECT_EQ(noteAbove->rawTextOrEmpty(), QStringLiteral("above"));
    EXPECT_EQ(QPointF(block->xPosition(), block->yPosition()), QPointF(-300, -200)) << "nothing was dragged along";
}

TEST_F(Checklists, ARowIsDraggedThroughAListThatScrollsAndNotAfterItsItemHasGone) {
    QByteArray many = R"({"items":[{"text":"first"})";
    for (int i = 0; i < 100; ++i) {
        many += R"(,{"text":"more"})";
    }
    const BlockPtr block = add(many + "]}");
    open(block);
    canvas.down({106, 150});
    for (int notch = 0; notch < 8; ++notch) {
        canvas.wheel({106, 150}, {0, -120});
    }
    canvas.moveTo({106, 240});
    canvas.up();
    EXPECT_GT(items(block).indexOf(QStringLiteral("first")), 20);

    block->setContent(R"({"items":[{"text":"a"},{"text":"b"},{"text":""}]})");
    canvas.settle();
    canvas.model.endEditing();
    open(block);
    canvas.down({106, 100 + 36 + 28 * 2 + 14});
    canvas.press(Qt::Key_Backspace);
    canvas.moveTo({106, 100 + 36 + 14});
    canvas.up();
    EXPECT_EQ(items(block), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(Checklists, StrangePayloadsAreShownAndKept) {
    const BlockPtr block =
        add(R"({"title":{"a":1},"items":[17,"loose",null,{"text":5,"isDone":"yes"},{"isDone":true}]})");
    EXPECT_EQ(body(block).progress(), QStringLiteral("1 of 5"));
    block->setContent(QByteArrayLiteral(R"({"items":[{"text":")") + QByteArray(10'000'000, 'x') + R"("}]})");
    canvas.settle();
    EXPECT_LT(block->height(), 6'000);
    open(block);
    EXPECT_TRUE(body(block).isTitleEdited()) << "the item is not to be opened";
    canvas.click({100 + 60, 100 + 50});
    EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << "what is typed now is not meant for the title";
    EXPECT_EQ(items(block).front().size(), 10'000'000);
    QByteArray many = R"({"items":[{"text":"first"})";
    for (int i = 0; i < 100'000; ++i) {
        many += R"(,{"text":"more"})";
    }
    block->setContent(many + "]}");
    canvas.settle();
    EXPECT_LE(block->height(), ChecklistBlockContent::kTallest);
    open(block);
    canvas.press(Qt::Key_Up);
    canvas.type(QStringLiteral("*"));
    EXPECT_EQ(block->checklistItems().size(), 100'001U);
}

} // namespace

} // namespace tallowby
