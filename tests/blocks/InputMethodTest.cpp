#include "blocks/CanvasDriver.h"

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
    EXPECT_TRUE(canvas.isEditorFocused());
    canvas.compose({}, QStringLiteral("\x07"));
    EXPECT_EQ(canvas.texts().size(), 1);
}

TEST_F(InputMethods, AnEventWithoutTextDoesNothing) {
    canvas.compose({});
    canvas.compose({}, QStringLiteral("\x1b"));
    EXPECT_TRUE(canvas.model.isEmpty());
}

TEST_F(InputMethods, ComposingStartsWithTheFirstKeyAndKeepsTheFocusUntilItIsDone) {
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
    EXPECT_TRUE(QRectF(block->xPosition() + 400, block->yPosition() + 300, block->width(), block->height())
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
    EXPECT_TRUE(canvas.isEditorFocused());
    canvas.type(QStringLiteral(" ok"));
    canvas.compose(QStringLiteral("z"));
    canvas.compose({}, QStringLiteral("中"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("你好, ok中")});
}

TEST_F(InputMethods, GivingUpACompositionLeavesNoLitter) {
    canvas.compose(QStringLiteral("n"));
    canvas.compose({});
    canvas.settle();
    EXPECT_TRUE(canvas.isEditorFocused());
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

} // namespace

} // namespace tallowby
