#include "blocks/CanvasDriver.h"
#include "blocks/code/CodeBlockContent.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

namespace tallowby {

namespace {

struct CodeBlocks : testing::Test {
    /// At (100, 100) on the screen.
    BlockPtr add(const QString &text, const QByteArray &content = {}) {
        const BlockPtr block = canvas.add(BlockType::code, {-300, -200, 400, 200}, text);
        block->setContent(content);
        canvas.settle();
        return block;
    }
    CodeBlockContent &body(const BlockPtr &block) {
        return dynamic_cast<CodeBlockContent &>(*canvas.containers().at(block.get())->body());
    }

    test::CanvasDriver canvas;
};

/// Each character's kind: c(omment), t(ext), n(umber), k(eyword) or a blank.
QString kinds(const char *language, const QString &text) {
    QString result;
    int state = 0;
    for (const QString &line : text.split(u'\n')) {
        QString marks(line.size(), u'.');
        state = lexCodeLine(CodeLanguage::named(QString::fromLatin1(language)), line, state,
                            [&](int start, int length, CodeToken token) {
                                for (int i = start; i < start + length; ++i) {
                                    marks[i] = QStringLiteral("ctnk").at(int(token));
                                }
                            });
        result += (result.isEmpty() ? QString() : QStringLiteral("|")) + marks;
    }
    return result;
}

TEST_F(CodeBlocks, TheLexerKnowsWhatBelongsTogether) {
    const struct {
        const char *language;
        const char *text;
        const char *kinds;
    } cases[] = {
        {"cpp", "int x1 = 0x1F; // if", "kkk......nnnn..ccccc"},
        {"cpp", "a /* if\nx */ if", "..ccccc|cccc.kk"},
        {"cpp", "\"a\\\"if\" if", "ttttttt.kk"},
        {"cpp", "\"open\nif", "ttttt|kk"},
        {"python", "\"\"\"if\nif\"\"\" if # x", "ttttt|ttttt.kk.ccc"},
        {"js", "`a\n` new", "tt|t.kkk"},
        {"rust", "'a if", "...kk"},
        {"SQL", "SELECT 'x' -- y", "kkkkkk.ttt.cccc"},
        {"plain", "if 12 \"x\"", "........."},
        {"no such", "if", ".."},
    };
    for (const auto &[language, text, expected] : cases) {
        EXPECT_EQ(kinds(language, QString::fromLatin1(text)), QLatin1StringView(expected)) << text;
    }
    for (const CodeLanguage &language : CodeLanguage::all()) {
        kinds(qPrintable(language.id), QStringLiteral("\\ \" ' ` \"\"\" /* <!-- \u202e") + QChar(0xD800) + u'\n');
    }
}

TEST_F(CodeBlocks, KeysWriteCode) {
    const BlockPtr block = add({});
    canvas.model.beginEditing(block);
    canvas.settle();
    canvas.type(QStringLiteral("if (a) {"));
    canvas.press(Qt::Key_Return);
    canvas.type(QStringLiteral("b"));
    canvas.press(Qt::Key_Tab);
    canvas.type(QStringLiteral("c"));
    canvas.press(Qt::Key_Return);
    canvas.type(QStringLiteral("}"));
    canvas.press(Qt::Key_Backtab);
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("if (a) {\n    b   c\n}"));
    canvas.press(Qt::Key_A, Qt::ControlModifier);
    canvas.press(Qt::Key_Tab);
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("    if (a) {\n        b   c\n    }"));
    canvas.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("if (a) {\n    b   c\n}"));
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    canvas.model.undo();
    EXPECT_EQ(block->rawTextOrEmpty(), QString());
    EXPECT_TRUE(block->isLive());
    EXPECT_EQ(body(block).displayText(), QStringLiteral("print(\"Hello World\")"));
}

TEST_F(CodeBlocks, ItGrowsToABoundAndThenFollowsTheCaret) {
    const BlockPtr block = add(QStringLiteral("short"));
    EXPECT_EQ(block->width(), 400);
    EXPECT_LT(block->height(), 100);
    block->setRawText(QStringLiteral("x = 1\n").repeated(10) + QString(2'500, u'y'));
    canvas.settle();
    EXPECT_GT(block->height(), 200);
    EXPECT_EQ(block->width(), CodeBlockContent::kLargest.width());
    block->setRawText(QStringLiteral("a line\n").repeated(3'000));
    canvas.settle();
    EXPECT_EQ(block->height(), CodeBlockContent::kLargest.height());
    canvas.model.beginEditing(block);
    canvas.settle();
    canvas.press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(body(block).lineNumbers().endsWith(QStringLiteral("3001")));
    EXPECT_GT(body(block).scrollOffset().y(), 10'000);
    canvas.press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(body(block).scrollOffset(), QPointF(0, 0));
    EXPECT_LT(body(block).lineNumbers().size(), 200);
}

TEST_F(CodeBlocks, LanguageAndCopyAreInTheHeader) {
    const BlockPtr block = add(QStringLiteral("x"), R"({"future":1.5,"codeLanguage":{}})");
    block->setCodeLanguage(QStringLiteral("no such"));
    EXPECT_EQ(body(block).language(), QStringLiteral("plain"));
    canvas.click({100 + 400 - 18, 115});
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("x"));
    EXPECT_FALSE(block->isSelected());
    canvas.model.beginEditing(block);
    canvas.settle();
    canvas.click({100 + 400 - 60, 115});
    EXPECT_TRUE(body(block).isMenuOpen());
    canvas.settle();
    body(block).chooseLanguage(QStringLiteral("rust"));
    EXPECT_FALSE(body(block).isMenuOpen());
    EXPECT_EQ(block->content(), QByteArrayLiteral(R"({"future":1.5,"codeLanguage":"rust"})"));
    block->setCodeLanguage(QStringLiteral("swift"));
    EXPECT_EQ(body(block).languageName(), QStringLiteral("Rust")) << "what the payload says wins";
}

} // namespace

} // namespace tallowby
