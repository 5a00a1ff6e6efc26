#include "blocks/CanvasDriver.h"
#include "blocks/sticky/StickyNoteBlockContent.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

struct StickyNotes : testing::Test {
    BlockPtr open(const QString &text = {}) {
        const BlockPtr note = canvas.add(BlockType::stickyNote, {-200, -200, 200, 200}, text);
        canvas.click({300, 200});
        EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << "the first click only selects";
        canvas.click({300, 200});
        EXPECT_EQ(canvas.model.focusedBlock(), note);
        return note;
    }
    StickyNoteBlockContent &body(const BlockPtr &note) {
        return dynamic_cast<StickyNoteBlockContent &>(*canvas.containers().at(note.get())->body());
    }

    test::CanvasDriver canvas;
};

TEST_F(StickyNotes, WhatIsTypedIsKeptAndTakenBackAsOne) {
    const BlockPtr note = open();
    canvas.type(QStringLiteral("ab"));
    canvas.press(Qt::Key_Return, Qt::ShiftModifier);
    canvas.type(QStringLiteral("c"));
    EXPECT_EQ(note->rawTextOrEmpty(), QStringLiteral("ab\nc"));
    EXPECT_TRUE(note->needsSync());
    canvas.press(Qt::Key_Return);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    canvas.model.undo();
    EXPECT_EQ(note->rawTextOrEmpty(), QString());
    EXPECT_TRUE(note->isLive()) << "an empty note is a note";
    canvas.model.redo();
    EXPECT_EQ(note->rawTextOrEmpty(), QStringLiteral("ab\nc"));
}

TEST_F(StickyNotes, LettersShrinkAndThenTheNoteGrows) {
    const BlockPtr note = canvas.add(BlockType::stickyNote, {0, 0, 200, 200});
    QString text;
    QList<int> letters;
    for (int words = 0; words < 120; ++words) {
        note->setRawText(text += QStringLiteral("some word "));
        const int size = body(note).displayFont().pixelSize();
        ASSERT_TRUE(letters.isEmpty() || size <= letters.back());
        ASSERT_TRUE(note->height() == 200 || size == StickyNoteBlockContent::kSmallestLetters);
        letters << size;
    }
    EXPECT_EQ(letters.front(), StickyNoteBlockContent::kLargestLetters);
    const double height = note->height();
    EXPECT_GT(height, 240);
    canvas.model.setFrameDuringGesture(*note, {0, 0, 200, 100});
    EXPECT_EQ(note->height(), height) << "nobody makes it too small for its text";
    canvas.model.setFrameDuringGesture(*note, {0, 0, 50, 40});
    EXPECT_EQ(note->width(), 160);
    note->setRawText(QStringLiteral("short"));
    EXPECT_EQ(body(note).displayFont().pixelSize(), StickyNoteBlockContent::kLargestLetters);
}

TEST_F(StickyNotes, TheChosenPaperIsInThePayload) {
    const BlockPtr note = canvas.add(BlockType::stickyNote, {0, 0, 200, 200});
    note->setContent(QByteArrayLiteral(R"({"future":[1,2.5]})"));
    note->setNeedsSync(false);
    canvas.model.setNotePaper(*note, QStringLiteral("mint"));
    EXPECT_EQ(note->content(), QByteArrayLiteral(R"({"future":[1,2.5],"stickyColor":"mint"})"));
    EXPECT_TRUE(note->needsSync());
    EXPECT_EQ(body(note).paper(), Theme::shared().notePaper(QStringLiteral("mint")));
    note->setStickyColor(QStringLiteral("rose"));
    EXPECT_EQ(body(note).paperName(), QStringLiteral("mint")) << "what the payload says wins";
    note->setContent(QByteArrayLiteral(R"({"stickyColor":17})"));
    EXPECT_EQ(body(note).paperName(), QStringLiteral("rose"));
    note->setStickyColor(QStringLiteral("url(evil)"));
    EXPECT_EQ(body(note).paperName(), QStringLiteral("yellow"));
}

} // namespace

} // namespace tallowby
