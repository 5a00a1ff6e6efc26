#include "blocks/CanvasDriver.h"
#include "blocks/FakeInputMethod.h"
#include "blocks/checklist/ChecklistBlockContent.h"
#include "blocks/table/TableBlockContent.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace tallowby {

namespace {

struct InputMethods : testing::Test {
    test::CanvasDriver canvas;
};

TEST_F(InputMethods, ADeadKeysLetterStartsABlock) {
    canvas.compose({}, QStringLiteral("é"));
    canvas.type(QStringLiteral("té"));
    canvas.settle();
    canvas.type(QStringLiteral("!"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("été!")});
    canvas.compose({}, QStringLiteral("\x07"));
    EXPECT_EQ(canvas.texts().size(), 1);
}

TEST_F(InputMethods, AnEventWithoutTextDoesNothing) {
    canvas.compose({});
    canvas.compose({}, QStringLiteral("\x1b"));
    EXPECT_TRUE(canvas.model.isEmpty());
}

TEST_F(InputMethods, ComposingStartsWithTheFirstKeyAndKeepsTheFocusWhileTheNoteIsEdited) {
    QObject *focusObject = canvas.window.focusObject();
    canvas.compose(QStringLiteral("n"));
    canvas.settle();
    ASSERT_EQ(canvas.texts(), QStringList{QString()});
    EXPECT_EQ(canvas.window.focusObject(), focusObject) << "a change of focus would end the composition";

    QInputMethodQueryEvent query(Qt::ImEnabled | Qt::ImCursorRectangle | Qt::ImSurroundingText);
    QCoreApplication::sendEvent(focusObject, &query);
    EXPECT_TRUE(query.value(Qt::ImEnabled).toBool());
    const QRectF caret = query.value(Qt::ImCursorRectangle).toRectF();
    const BlockPtr block = canvas.model.blocks().front();
    EXPECT_TRUE(QRectF(canvas.view->viewport().toScreen({block->xPosition(), block->yPosition()}),
                       QSizeF(block->width(), block->height()))
                    .contains(caret.center()))
        << "the candidates stand beside the text";

    canvas.compose(QStringLiteral("ni"));
    canvas.compose(QStringLiteral("好"), QStringLiteral("你"));
    canvas.settle();
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("你")});
    EXPECT_EQ(canvas.window.focusObject(), focusObject) << "the next word has begun";
    canvas.compose({}, QStringLiteral("好"));
    canvas.type(QStringLiteral(","));
    canvas.settle();
    canvas.type(QStringLiteral(" ok"));
    canvas.compose(QStringLiteral("z"));
    canvas.compose({}, QStringLiteral("中"));
    canvas.press(Qt::Key_Left);
    canvas.press(Qt::Key_Backspace);
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("你好, o中")});
    EXPECT_EQ(canvas.window.focusObject(), focusObject) << "the first key of a word may arrive with the end of another";
    EXPECT_TRUE(canvas.containers().at(block.get())->body()->inputItem()->property("cursorVisible").toBool());
}

TEST_F(InputMethods, GivingUpACompositionLeavesNoLitter) {
    canvas.compose(QStringLiteral("n"));
    canvas.compose({});
    canvas.settle();
    canvas.press(Qt::Key_Escape);
    EXPECT_TRUE(canvas.model.isEmpty());
}

TEST_F(InputMethods, TheOwnersTextWaitsWhileComposing) {
    canvas.type(QStringLiteral("a"));
    canvas.compose(QStringLiteral("b"));
    const BlockPtr block = canvas.model.blocks().front();
    block->setRawText(QStringLiteral("from elsewhere"));
    EXPECT_EQ(canvas.editorText(), QStringLiteral("a"));
    canvas.compose({}, QStringLiteral("b"));
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("ab"));
    block->setRawText(QStringLiteral("again"));
    EXPECT_EQ(canvas.editorText(), QStringLiteral("again"));
}

TEST_F(InputMethods, NothingBeginsInTheMiddleOfAGestureOrWithABlank) {
    canvas.down({600, 400});
    canvas.moveTo({650, 450});
    canvas.compose(QStringLiteral("n"));
    canvas.compose({}, QStringLiteral("n"));
    canvas.up();
    const QString wideBlank(QChar(0x3000));
    canvas.compose({}, wideBlank);
    EXPECT_EQ(canvas.view->cursor().shape(), Qt::OpenHandCursor);
    canvas.drag({600, 400}, {650, 450});
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(100, 100)) << "both drags were of the paper";
    canvas.letGo(Qt::Key_Space);
    EXPECT_EQ(canvas.view->cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(canvas.model.isEmpty());
}

/// With an input method that is asked to end its word by other means than keys.
struct Composing : InputMethods, testing::WithParamInterface<test::FakeInputMethod::Framework> {
    void clickAndSettle(QPointF place) {
        canvas.click(place);
        canvas.settle();
    }

    test::FakeInputMethod method{GetParam()};
};

TEST_P(Composing, AWordStaysInTheNoteThatIsLeft) {
    const BlockPtr anchor = canvas.add(BlockType::text, {-300, -200, 100, 24}, QStringLiteral("anchor"));
    canvas.settle();
    canvas.pointAt({500, 300});
    method.compose(QStringLiteral("one"));
    clickAndSettle({700, 500});
    method.compose(QStringLiteral("two"));
    canvas.down({700, 550}, Qt::RightButton);
    canvas.up();
    canvas.settle();
    canvas.press(Qt::Key_Escape);
    canvas.settle();
    method.compose(QStringLiteral("three"));
    clickAndSettle({120, 112});
    ASSERT_EQ(canvas.model.focusedBlock(), anchor);
    canvas.press(Qt::Key_End);
    method.compose(QStringLiteral(" four"));
    clickAndSettle({120, 112});
    EXPECT_EQ(anchor->rawTextOrEmpty(), QStringLiteral("anchor four")) << "a click into the same note";
    canvas.press(Qt::Key_End);
    method.compose(QStringLiteral("!"));
    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    canvas.settle();
    canvas.model.setActiveTool(CanvasTool::Kind::select);
    // The same word again, a moment later.
    method.compose(QStringLiteral("!"));
    canvas.model.endEditing();
    canvas.settle();
    QStringList texts = canvas.texts();
    texts.sort();
    EXPECT_EQ(texts.join(u','), QStringLiteral("!,anchor four!,one,three,two"));
}

TEST_P(Composing, AWordStaysInTheFieldThatIsLeft) {
    const BlockPtr list = canvas.add(BlockType::checklist, {-300, -200, 280, 40});
    list->setContent(R"({"items":[{"text":"a"},{"text":"b"},{"text":"c"}]})");
    const BlockPtr table = canvas.add(BlockType::table, {0, -200, 200, 64});
    table->setContent(R"({"cells":[["a","b"],["c","d"],["e","f"]]})");
    canvas.settle();
    const auto items = [&list] {
        QStringList texts;
        for (const ChecklistItemPtr &item : list->checklistItems()) {
            texts << item->text();
        }
        return texts.join(u',');
    };
    const auto row = [](int item, double x) { return QPointF(100 + x, 100 + 36 + 28 * item + 14); };
    const auto compose = [this](const QString &word) {
        canvas.press(Qt::Key_End);
        method.compose(word);
    };
    canvas.model.beginEditing(list);
    canvas.settle();
    clickAndSettle(row(1, 60));
    compose(QStringLiteral("1"));
    clickAndSettle(row(0, 60));
    compose(QStringLiteral("2"));
    EXPECT_EQ(items(), QStringLiteral("a,b1,c"));
    clickAndSettle(row(1, 280 - 20));
    EXPECT_EQ(items(), QStringLiteral("a2,c")) << "another row is removed";
    compose(QStringLiteral("3"));
    clickAndSettle(row(0, 280 - 20));
    EXPECT_EQ(items(), QStringLiteral("c")) << "the row itself is removed";
    compose(QStringLiteral("4"));
    dynamic_cast<ChecklistBlockContent &>(*canvas.containers().at(list.get())->body()).addItem();
    canvas.settle();
    compose(QStringLiteral("5"));
    canvas.model.beginEditing(table);
    canvas.settle();
    EXPECT_EQ(items(), QStringLiteral("c4,5"));

    auto &body = dynamic_cast<TableBlockContent &>(*canvas.containers().at(table.get())->body());
    const auto cells = [&table] {
        QStringList texts;
        for (const QStringList &cellsOfRow : table->tableData()) {
            texts << cellsOfRow.join(u',');
        }
        return texts.join(u'|');
    };
    clickAndSettle({420, 116});
    compose(QStringLiteral("1"));
    clickAndSettle({510, 148});
    compose(QStringLiteral("2"));
    body.addColumn();
    canvas.settle();
    EXPECT_EQ(cells(), QStringLiteral("a1,b,|c,d2,|e,f,"));
    compose(QStringLiteral("3"));
    body.removeColumn();
    canvas.settle();
    compose(QStringLiteral("4"));
    body.removeRow();
    canvas.settle();
    EXPECT_EQ(cells(), QStringLiteral("a1,b|e,f"));
}

INSTANTIATE_TEST_SUITE_P(OfBothFrameworks, Composing,
                         testing::Values(test::FakeInputMethod::Framework::ibus,
                                         test::FakeInputMethod::Framework::fcitx));

} // namespace

} // namespace tallowby
