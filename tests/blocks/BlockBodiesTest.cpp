#include "blocks/BlockKinds.h"
#include "blocks/CanvasDriver.h"
#include "blocks/text/AutoExpandingTextEditor.h"
#include "blocks/text/TextBlockContent.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>

namespace tallowby {

namespace {

struct BlockBodies : testing::Test {
    QSizeF sizeOf(const BlockPtr &block) { return {block->width(), block->height()}; }

    test::CanvasDriver canvas;
};

TEST_F(BlockBodies, EveryKindShowsAndSaysItself) {
    for (int kind = 0; kind < kBlockTypeCount; ++kind) {
        const auto type = static_cast<BlockType>(kind);
        const BlockPtr block = canvas.add(type, {0, 0, 200, 120}, QStringLiteral("content %1").arg(kind));
        const BlockContainerView *container = canvas.containers().at(block.get());
        ASSERT_TRUE(container->body()) << kind;
        EXPECT_EQ(container->body()->kindName(), blockKinds().kind(type).name);
        const bool isRecorded = type == BlockType::voiceNote || type == BlockType::videoNote;
        const QString content = isRecorded ? QStringLiteral("empty") : block->rawTextOrEmpty();
        EXPECT_EQ(container->accessibleName(), QString(blockKinds().kind(type).name + u": " + content));
        EXPECT_NE(container->accessibleRole(), QAccessible::NoRole);
        EXPECT_TRUE(container->isEnabled()) << "a screen reader would say that it is not to be used";
        EXPECT_EQ(container->body()->isEnabled(), container->body()->takesPointerAtRest());
    }
    canvas.settle();
}

TEST_F(BlockBodies, TextsThatBecomeLargeEnoughToBeReadAreShownAFewAFrame) {
    std::vector<BlockPtr> notes;
    for (int i = 0; i < 60; ++i) {
        const QPointF corner(100.0 * double(i % 10) - 500, 100.0 * double(i / 10) - 300);
        notes.push_back(canvas.add(BlockType::stickyNote, {corner, QSizeF(90, 90)}, QStringLiteral("note")));
    }
    const auto read = [this, &notes] {
        return std::ranges::count_if(
            notes, [this](const BlockPtr &block) { return canvas.containers().at(block.get())->body()->isLegible(); });
    };
    while (canvas.view->zoom() > 0.3) {
        canvas.view->zoomOut();
    }
    EXPECT_EQ(read(), 0);
    canvas.view->resetZoom();
    EXPECT_EQ(read(), 0);
    Q_EMIT canvas.window.afterAnimating();
    EXPECT_GT(read(), 0);
    EXPECT_LT(read(), 60);
    for (int frame = 0; frame < 3; ++frame) {
        Q_EMIT canvas.window.afterAnimating();
    }
    EXPECT_EQ(read(), 60);
    canvas.settle();
}

TEST_F(BlockBodies, BlocksThatWereThereBeforeTheCanvasAreShown) {
    const BlockPtr block = canvas.add(BlockType::text, {-100, 0, 200, 40}, QStringLiteral("from the file"));
    canvas.view.reset();
    canvas.view = makeCanvasView(canvas.engine, canvas.model, canvas.notifications);
    canvas.view->setParentItem(canvas.window.contentItem());
    canvas.view->setSize({800, 600});
    EXPECT_TRUE(canvas.containers().contains(block.get()));
    canvas.settle();
}

TEST_F(BlockBodies, BlocksBesideTheViewAreMadeAFewAFrameAndThoseInItAtOnce) {
    std::vector<BlockPtr> beside;
    for (std::size_t i = 0; i < 3 * ContainerRows::kRowsPerFrame; ++i) {
        const QPointF corner(410 + 100.0 * double(i % 2), 100.0 * double(i / 2) - 450);
        beside.push_back(canvas.add(BlockType::stickyNote, {corner, QSizeF(90, 90)}, QString::number(i)));
    }
    const auto made = [this, &beside] {
        return std::size_t(std::ranges::count_if(
            beside, [this](const BlockPtr &block) { return canvas.containers().contains(block.get()); }));
    };
    EXPECT_EQ(made(), 0U);
    Q_EMIT canvas.window.afterAnimating();
    EXPECT_EQ(made(), ContainerRows::kRowsPerFrame);

    canvas.model.beginEditing(beside.back());
    EXPECT_TRUE(canvas.containers().at(beside.back().get())->isEditing()) << "whoever types needs it now";
    canvas.model.endEditing();
    canvas.view->jumpTo({-180, 0});
    for (const BlockPtr &block : beside) {
        const bool isSeen = std::abs(block->yPosition() + 45) < 300;
        EXPECT_TRUE(!isSeen || canvas.containers().contains(block.get())) << block->yPosition();
    }
    for (int frame = 0; frame < 3; ++frame) {
        Q_EMIT canvas.window.afterAnimating();
    }
    EXPECT_EQ(made(), beside.size());
    const auto rows = [this] {
        QStringList texts;
        for (const BlockPtr &block : canvas.view->containerRows()->blocks()) {
            texts << block->rawTextOrEmpty();
        }
        return texts;
    };
    EXPECT_EQ(rows(), canvas.texts()) << "the order of painting is kept";
    canvas.settle();
}

TEST_F(BlockBodies, HostileRecordsAreShownWithinBounds) {
    const QString markup = QStringLiteral("<img src='http://127.0.0.1/x'><b>bold</b>\0\u202e\x1b[31m");
    for (int kind = 0; kind < kBlockTypeCount; ++kind) {
        const BlockPtr block = canvas.add(static_cast<BlockType>(kind), {-1e12, -1e12, 1e300, 1e300}, markup);
        block->setTextColor(QStringLiteral("url(evil)"));
        block->setFontSize(1e9);
        block->setContent(QByteArrayLiteral("[[[[not an object"));
        canvas.model.updateVisibleBlocks({-1e12, -1e12, 800, 600}, 1);
        canvas.settle();
        const BlockContainerView *container = canvas.containers().at(block.get());
        EXPECT_LE(container->width(), 1e5);
        EXPECT_LE(container->height(), 1e5);
    }
    const BlockPtr text = canvas.model.blocks().front();
    EXPECT_EQ(text->rawTextOrEmpty(), markup);
}

TEST_F(BlockBodies, ATextTakesUpItsOwnMeasure) {
    const BlockPtr block = canvas.add(BlockType::text, {0, 0, 300, 200}, QStringLiteral("hi"));
    EXPECT_EQ(sizeOf(block), QSizeF(100, 24)) << "the smallest there is";
    EXPECT_EQ(block->xPosition(), 0) << "what was there stays in its place";
    block->setNeedsSync(false);
    block->setRawText(QStringLiteral("one line that is a good deal longer than a hundred points"));
    const QSizeF oneLine = sizeOf(block);
    EXPECT_GT(oneLine.width(), 200);
    EXPECT_EQ(oneLine.height(), 24) << "it grows and does not wrap";
    block->setRawText(block->rawTextOrEmpty() + QStringLiteral("\nand\nmore"));
    EXPECT_GT(block->height(), 50);
    EXPECT_FALSE(block->needsSync()) << "measuring is no edit";

    canvas.model.beginEditing(block);
    canvas.settle();
    const QSizeF edited = sizeOf(block);
    canvas.model.endEditing();
    canvas.settle();
    EXPECT_NEAR(edited.width(), block->width(), 1.5) << "nothing jumps between editor and display";
    EXPECT_NEAR(edited.height(), block->height(), 1.5);
}

TEST_F(BlockBodies, ATextPulledNarrowerThanItsLineWrapsAndNothingIsOutsideOfIt) {
    const BlockPtr block = canvas.add(BlockType::text, {-300, -200, 100, 24},
                                      QStringLiteral("one line that is a good deal longer than that"));
    canvas.settle();
    const double line = block->width();
    ASSERT_GT(line, 250);
    canvas.model.selectOnly(block);
    const auto pullTo = [&](double width) {
        const QPointF corner(100 + block->width() + 4, 100 + block->height() + 4);
        canvas.drag(corner, corner + QPointF(width - block->width(), 0));
        canvas.settle();
    };
    pullTo(160);
    EXPECT_NEAR(block->width(), 160, 1);
    const double wrapped = block->height();
    EXPECT_GT(wrapped, 40) << "the height follows";
    const auto display = [&] { return canvas.containers().at(block.get())->body()->property("displaySize").toSizeF(); };
    EXPECT_LE(display().width() + 8, block->width() + 1);
    EXPECT_LE(display().height(), wrapped);

    canvas.model.beginEditing(block);
    canvas.settle();
    EXPECT_NEAR(block->height(), wrapped, 1.5) << "nothing jumps between editor and display";
    canvas.type(QStringLiteral(" and some more words behind it"));
    EXPECT_NEAR(block->width(), 160, 1);
    EXPECT_GT(block->height(), wrapped);
    canvas.model.endEditing();
    pullTo(120);
    EXPECT_GT(block->height(), wrapped + 30);

    // It is still so after a restart, and undo brings back widths as they were given.
    canvas.view.reset();
    canvas.view = makeCanvasView(canvas.engine, canvas.model, canvas.notifications);
    canvas.view->setParentItem(canvas.window.contentItem());
    canvas.view->setSize({800, 600});
    canvas.settle();
    EXPECT_NEAR(block->width(), 120, 1);
    canvas.model.undoGesture();
    EXPECT_NEAR(block->width(), 160, 1);
    canvas.model.undoGesture();
    canvas.model.undoGesture();
    canvas.settle();
    EXPECT_NEAR(block->width(), line, 1);
    EXPECT_EQ(block->height(), 24);
    block->setRawText(block->rawTextOrEmpty() + QStringLiteral(" which grows"));
    EXPECT_GT(block->width(), line) << "one that was given no width is as wide as its line";
    EXPECT_EQ(block->height(), 24);
}

TEST_F(BlockBodies, ASpawnedTextStaysCentredOnThePointer) {
    const QString words = QStringLiteral("words that were there at once and need far more than a hundred points");
    const BlockPtr block = canvas.model.spawnBlock({0, 0}, BlockType::text, words);
    EXPECT_GT(block->width(), 200);
    EXPECT_NEAR(block->xPosition() + block->width() / 2, 0, 0.01);
    EXPECT_NEAR(block->yPosition() + block->height() / 2, 0, 0.51);
    const double left = block->xPosition();
    canvas.type(QStringLiteral(" and what is typed after that grows to the right"));
    EXPECT_EQ(block->xPosition(), left);
}

TEST_F(BlockBodies, EditorSizesFollowTheRule) {
    EXPECT_EQ(AutoExpandingTextEditor::intrinsicSize({0, 0}), QSizeF(80, 20));
    EXPECT_EQ(AutoExpandingTextEditor::intrinsicSize({100.2, 33.1}), QSizeF(109, 38));
    const QString line(1'999, u'x');
    EXPECT_EQ(AutoExpandingTextEditor::wrapWidthFor(QString(line + u'\n' + line)), 0);
    EXPECT_GT(AutoExpandingTextEditor::wrapWidthFor(QString(u"a\n" + line + line)), 0);
    const QFont plain = TextBlockContent::styledDisplayFont(18, false, false);
    const QFont both = TextBlockContent::styledDisplayFont(18, true, true);
    EXPECT_FALSE(plain.bold() || plain.italic());
    EXPECT_TRUE(both.bold() && both.italic());
    EXPECT_EQ(both.pixelSize(), 18);
}

TEST_F(BlockBodies, StyleReachesEditorAndDisplay) {
    const BlockPtr block = canvas.add(BlockType::text, {0, 0, 300, 200}, QStringLiteral("styled"));
    canvas.model.beginEditing(block);
    canvas.settle();
    block->setIsItalic(true);
    EXPECT_TRUE(canvas.focus()->property("font").value<QFont>().italic());
    block->setIsItalic(false);
    block->setTextColor(QStringLiteral("#2F6BEB"));
    EXPECT_FALSE(canvas.focus()->property("font").value<QFont>().italic());
    EXPECT_EQ(canvas.focus()->property("color").value<QColor>(), QColor(0x2F6BEB));
}

TEST_F(BlockBodies, OpeningATextChangesNothingAndAnEditOnlyWhatIsEdited) {
    const QString text = QStringLiteral("Voil\u00e0\u00a0!\r\nhttps://a.example\u2028end\u00a0");
    for (const BlockType type : {BlockType::text, BlockType::code, BlockType::stickyNote}) {
        const BlockPtr block = canvas.add(type, {-300, -200, 200, 200}, text);
        canvas.settle();
        canvas.model.beginEditing(block);
        canvas.settle();
        canvas.model.endEditing();
        EXPECT_EQ(block->rawTextOrEmpty(), text);
        EXPECT_FALSE(canvas.model.canUndo());
        canvas.model.beginEditing(block);
        canvas.settle();
        canvas.press(Qt::Key_End, Qt::ControlModifier);
        canvas.type(QStringLiteral("."));
        EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("Voil\u00e0\u00a0!\nhttps://a.example\u2028end\u00a0."));
        canvas.model.undo();
        EXPECT_EQ(block->rawTextOrEmpty(), text);
    }
}

TEST_F(BlockBodies, PastingTakesPlainTextOnly) {
    auto *rich = new QMimeData;
    rich->setHtml(QStringLiteral("<h1>Big</h1><img src='file:///etc/passwd'>"));
    rich->setText(QStringLiteral("Big"));
    QGuiApplication::clipboard()->setMimeData(rich);
    canvas.type(QStringLiteral("a"));
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("aBig")});
}

TEST_F(BlockBodies, AnEnormousPasteIsKeptWholeAndNotOpened) {
    const QString huge(10'000'000, u'x');
    canvas.type(QStringLiteral("ab"));
    canvas.press(Qt::Key_Left);
    QGuiApplication::clipboard()->setText(huge);
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    const BlockPtr block = canvas.model.blocks().front();
    EXPECT_EQ(block->rawTextOrEmpty(), QString(u'a' + huge + u'b'));
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    EXPECT_LT(block->width(), 10'000);
    canvas.settle();
    EXPECT_LT(canvas.containers().at(block.get())->body()->property("displayText").toString().size(), 30'000);
    canvas.press(Qt::Key_Return);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    EXPECT_TRUE(block->isSelected());
}

TEST_F(BlockBodies, ALongPasteIsEdited) {
    const QString line(2'500, u'x');
    canvas.type(QStringLiteral("a"));
    QGuiApplication::clipboard()->setText(line);
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    canvas.type(QStringLiteral("b"));
    EXPECT_EQ(canvas.texts(), QStringList{QString(u'a' + line + u'b')});
    EXPECT_LT(canvas.model.blocks().front()->width(), 10'000) << "broken somewhere, for once";
}

TEST_F(BlockBodies, TheCaretComesToRestWithTheWindow) {
    canvas.type(QStringLiteral("a"));
    const QList<QQuickItem *> parts = canvas.focus()->childItems();
    const auto isBlinking = [](const QQuickItem *item) { return item->property("isBlinking").toBool(); };
    EXPECT_EQ(std::ranges::count_if(parts, isBlinking), 1);
    canvas.window.hide();
    canvas.settle();
    EXPECT_EQ(std::ranges::count_if(parts, isBlinking), 0);
}

} // namespace

} // namespace tallowby
