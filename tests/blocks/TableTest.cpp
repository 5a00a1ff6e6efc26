#include "blocks/CanvasDriver.h"
#include "blocks/table/TableBlockContent.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

namespace tallowby {

namespace {

struct Tables : testing::Test {
    /// At (100, 100) on the screen.
    BlockPtr add(const QByteArray &content) {
        const BlockPtr block = canvas.add(BlockType::table, {-300, -200, 300, 200});
        block->setContent(content);
        canvas.settle();
        return block;
    }
    void open(const BlockPtr &block) {
        canvas.model.beginEditing(block);
        canvas.settle();
    }
    /// Rows apart by bars, cells by commas.
    QString cells(const BlockPtr &block) {
        QStringList rows;
        for (const QStringList &row : block->tableData()) {
            rows << row.join(u',');
        }
        return rows.join(u'|');
    }
    TableBlockContent &body(const BlockPtr &block) {
        return dynamic_cast<TableBlockContent &>(*canvas.containers().at(block.get())->body());
    }

    test::CanvasDriver canvas;
};

TEST_F(Tables, KeysWalkFromCellToCell) {
    const BlockPtr block = add(R"({"future":[1],"rows":2,"columns":2,"cells":[["",""],["",""]]})");
    open(block);
    canvas.type(QStringLiteral("a"));
    canvas.press(Qt::Key_Tab);
    canvas.type(QStringLiteral("b"));
    canvas.press(Qt::Key_Tab);
    canvas.type(QStringLiteral("c"));
    canvas.press(Qt::Key_Backtab);
    canvas.type(QStringLiteral("B"));
    EXPECT_EQ(cells(block), QStringLiteral("a,B|c,")) << "a cell that Tab comes to is replaced by typing";
    canvas.press(Qt::Key_Return);
    canvas.type(QStringLiteral("d"));
    canvas.press(Qt::Key_Tab);
    canvas.type(QStringLiteral("e"));
    EXPECT_EQ(cells(block), QStringLiteral("a,B|c,d|e,"));
    EXPECT_EQ(block->content(), QByteArrayLiteral(R"({"future":[1],"rows":3,"columns":2,"cells":)"
                                                  R"([["a","B"],["c","d"],["e",""]]})"));
    canvas.press(Qt::Key_Up);
    canvas.press(Qt::Key_Left);
    canvas.press(Qt::Key_Left);
    canvas.type(QStringLiteral("!"));
    EXPECT_EQ(cells(block), QStringLiteral("a,B!|c,d|e,"));
    canvas.press(Qt::Key_Tab);
    canvas.press(Qt::Key_Tab);
    canvas.type(QStringLiteral("d"));
    canvas.press(Qt::Key_Backtab);
    canvas.type(QStringLiteral("d"));
    canvas.press(Qt::Key_Tab);
    canvas.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(cells(block), QStringLiteral("a,B!|d,d|e,")) << "what was typed into another cell stays";
    EXPECT_TRUE(block->needsSync());
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    canvas.click({100 + 20, 100 + 16});
    canvas.type(QStringLiteral("?"));
    EXPECT_TRUE(cells(block).startsWith(QStringLiteral("?a")) || cells(block).startsWith(QStringLiteral("a?")));
}

TEST_F(Tables, TabSeparatedTextGoesInAndOut) {
    const BlockPtr block = add(R"({"cells":[["a","b"],["c","d"]]})");
    open(block);
    canvas.press(Qt::Key_Tab);
    QGuiApplication::clipboard()->setText(QStringLiteral("1\t2\r\n3\t4\r\n5\t6\r\n"));
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(cells(block), QStringLiteral("a,1,2|c,3,4|,5,6"));
    canvas.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("a\t1\t2\nc\t3\t4\n\t5\t6\n"));
    QGuiApplication::clipboard()->setText(QStringLiteral("word"));
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(block->tableData().at(0).at(1), QStringLiteral("1word")) << "a word goes into the cell";
    body(block).removeColumn();
    body(block).removeRow();
    EXPECT_EQ(cells(block), QStringLiteral("c,4|,6"));
    body(block).addColumn();
    body(block).addRow();
    canvas.type(QStringLiteral("x"));
    EXPECT_EQ(cells(block), QStringLiteral("c,4,|,6,|,,x"));
}

TEST_F(Tables, ColumnsFollowTheirContentUpToABound) {
    const BlockPtr block = add(R"({"cells":[["a","n"],["b","1,200.50"]]})");
    EXPECT_EQ(block->width(), 2 * TableBlockContent::kNarrowestColumn);
    const double height = block->height();
    open(block);
    canvas.type(QStringLiteral("words that need more room "));
    const double wider = block->width();
    EXPECT_GT(wider, 200);
    EXPECT_EQ(block->height(), height);
    canvas.type(QStringLiteral("than a column is given at the most, so that they wrap"));
    EXPECT_EQ(block->width(), TableBlockContent::kWidestColumn + TableBlockContent::kNarrowestColumn);
    EXPECT_GT(block->height(), height);
}

TEST_F(Tables, HugeAndStrangeTablesStayUsable) {
    QByteArray huge = R"({"cells":[)";
    for (int row = 0; row < 1'000; ++row) {
        huge += row > 0 ? ",[" : "[";
        for (int column = 0; column < 50; ++column) {
            huge += (column > 0 ? "," : "") + QByteArray("\"") + QByteArray::number(row * 50 + column) + '"';
        }
        huge += ']';
    }
    const BlockPtr block = add(huge + "]}");
    EXPECT_LE(block->width(), TableBlockContent::kLargest.width());
    EXPECT_LE(block->height(), TableBlockContent::kLargest.height());
    EXPECT_LT(body(block).cells()->rowCount(), 300);
    open(block);
    for (int i = 0; i < 40; ++i) {
        canvas.press(Qt::Key_Down);
    }
    canvas.type(QStringLiteral("*"));
    EXPECT_EQ(block->tableData().at(40).at(0), QStringLiteral("2000*"));
    EXPECT_FALSE(body(block).editedRect().isEmpty()) << "what is edited is in view";
    canvas.model.endEditing();

    block->setContent(QByteArrayLiteral(R"({"cells":[7,[1e308,true,null,{"a":[1]},"\u202e"],[],"x"]})"));
    canvas.settle();
    open(block);
    canvas.type(QStringLiteral("!"));
    EXPECT_TRUE(block->content().contains(R"(true,null,{"a":[1]})")) << block->content().toStdString();
    canvas.model.endEditing();
    block->setContent(QByteArrayLiteral(R"({"cells":[[")") + QByteArray(10'000'000, 'x') + R"("]]})");
    canvas.settle();
    EXPECT_LT(block->height(), 3'000);
    open(block);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << "an editor of nothing would swallow what is typed";
    EXPECT_EQ(block->tableData().at(0).at(0).size(), 10'000'000);
}

TEST_F(Tables, AnOpenCellTakesAnyTextAndAnEnormousOneIsNotOpened) {
    const BlockPtr block = add(R"({"cells":[["",""],["c","d"]]})");
    open(block);
    const QString paragraph(2'500, u'x');
    QGuiApplication::clipboard()->setText(paragraph);
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    canvas.type(QStringLiteral(" and more"));
    canvas.press(Qt::Key_Backspace);
    const double whole = block->height();
    canvas.press(Qt::Key_Tab);
    EXPECT_EQ(block->tableData().at(0).at(0), QString(paragraph + QStringLiteral(" and mor")));
    EXPECT_LT(block->height(), whole) << "the editor shows all of it, the table its beginning";
    canvas.press(Qt::Key_Backtab);
    canvas.type(QStringLiteral("shorter"));
    EXPECT_EQ(cells(block), QStringLiteral("shorter,|c,d")) << "it can be opened again";

    canvas.model.endEditing();
    block->setContent(R"({"cells":[[")" + QByteArray(30'000, 'x') + R"(","b"],["c","d"]]})");
    canvas.settle();
    open(block);
    canvas.type(QStringLiteral("B"));
    EXPECT_EQ(block->tableData().at(0).at(1), QStringLiteral("bB")) << "the first cell that can be opened";
    canvas.press(Qt::Key_Backtab);
    canvas.type(QStringLiteral("!"));
    EXPECT_EQ(block->tableData().at(0).at(1), QStringLiteral("bB!")) << "there is none before it";
    canvas.click({100 + 20, 100 + 16});
    EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << "what is typed now is not meant for the cell before";
}

TEST_F(Tables, TheMenuChangesRowsAndColumnsWhereItWasOpened) {
    const BlockPtr block = add(R"({"kept":1,"rows":2,"columns":2,"cells":[["a","b"],["c","d"]]})");
    const auto choose = [&](const QString &text) {
        // The first column of the first row.
        canvas.model.setRightClickCursorPos({-290, -190});
        for (const MenuEntry &entry : canvas.view->menuEntriesOf(*block)) {
            if (entry.text == text) {
                entry.action();
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(choose(QStringLiteral("Add row below")));
    EXPECT_EQ(cells(block), QStringLiteral("a,b|,|c,d"));
    EXPECT_TRUE(choose(QStringLiteral("Add column to the right")));
    EXPECT_EQ(cells(block), QStringLiteral("a,,b|,,|c,,d"));
    EXPECT_TRUE(choose(QStringLiteral("Remove row")));
    EXPECT_TRUE(choose(QStringLiteral("Remove column")));
    EXPECT_EQ(cells(block), QStringLiteral(",|,d"));
    EXPECT_TRUE(block->content().contains(R"("kept":1)"));
    EXPECT_TRUE(block->needsSync());

    block->setContent(R"({"cells":[["only"]]})");
    canvas.settle();
    EXPECT_FALSE(choose(QStringLiteral("Remove row")));
    EXPECT_FALSE(choose(QStringLiteral("Remove column")));
}

} // namespace

} // namespace tallowby
