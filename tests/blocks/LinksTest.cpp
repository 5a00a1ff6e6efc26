#include "blocks/CanvasDriver.h"
#include "blocks/link/TextLinks.h"
#include "platform/AppEvents.h"
#include "platform/theme/Theme.h"

#include <gtest/gtest.h>

#include <QDesktopServices>

namespace tallowby {

namespace {

/// The desktop that links are handed to.
class Browser : public QObject {
    Q_OBJECT

public:
    Browser() {
        for (const QString &scheme : kSchemes) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        }
    }
    ~Browser() override {
        for (const QString &scheme : kSchemes) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
    Q_INVOKABLE void open(const QUrl &url) { opened << url.toString(); }

    QStringList opened;

private:
    const QStringList kSchemes{QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto"),
                               QStringLiteral("file"), QStringLiteral("ftp")};
};

struct Links : testing::Test {
    /// Screen points at which the block, whose letters are all about as wide, shows the part of its only line.
    QPointF placeOf(const BlockPtr &block, double part) {
        return QPointF(400, 300) + QPointF(block->xPosition() + part * block->width(), block->yPosition() + 12);
    }

    Browser browser;
    test::CanvasDriver canvas;
};

TEST_F(Links, AreFoundAsAPersonReadsThem) {
    struct Case {
        QString text;
        QStringList links;
    };
    const std::initializer_list<Case> cases{
        {u"see https://example.org/a?b=c#d, and more."_qs, {u"https://example.org/a?b=c#d"_qs}},
        {u"(HTTP://Example.org/a_(b)) https://example.org/[1]."_qs,
         {u"HTTP://Example.org/a_(b)"_qs, u"https://example.org/[1]"_qs}},
        {u"write mailto:ines@example.org!\nhttps://a.example"_qs,
         {u"mailto:ines@example.org"_qs, u"https://a.example"_qs}},
        {u"\"https://example.org\" <https://example.org/x>"_qs,
         {u"https://example.org"_qs, u"https://example.org/x"_qs}},
        {u"https://example.org/\u202egpj.exe"_qs, {u"https://example.org/"_qs}},
        {u"file:///etc/passwd javascript:alert(1) ftp://example.org smb://x xhttps://no.example"_qs, {}},
        {u"https:// http://. mailto:nobody https://"_qs, {}},
        {QString(u"https://example.org/"_qs + QString(3'000, u'x')), {}},
        {u"https://example.org/a"_qs + QChar(0xD800), {u"https://example.org/a"_qs}},
    };
    for (const auto &[text, links] : cases) {
        QStringList found;
        for (const TextLink &link : linksIn(text)) {
            found << text.mid(link.start, link.length);
        }
        EXPECT_EQ(found, links) << qPrintable(text.left(80));
    }
}

TEST_F(Links, AreOpenedByAClickWithControlAtRestAndWhileEdited) {
    int closings = 0;
    const auto listening =
        canvas.notifications.observe(events::canvasCloseRequested, [&](const Notification &) { ++closings; });
    const BlockPtr text = canvas.add(BlockType::text, {-300, -200, 100, 24},
                                     QStringLiteral("https://example.org/path and then file:///etc/passwd"));
    canvas.settle();
    canvas.moveTo(placeOf(text, 0.2));
    EXPECT_EQ(canvas.view->cursor().shape(), Qt::IBeamCursor);
    canvas.hold(Qt::Key_Control, {});
    EXPECT_EQ(canvas.view->cursor().shape(), Qt::PointingHandCursor);
    canvas.letGo(Qt::Key_Control);
    EXPECT_EQ(canvas.view->cursor().shape(), Qt::IBeamCursor);
    canvas.click(placeOf(text, 0.9), Qt::ControlModifier);
    EXPECT_EQ(browser.opened, QStringList()) << "a file stays closed";
    canvas.model.endEditing();
    canvas.model.deselectAll();
    canvas.click(placeOf(text, 0.2), Qt::ControlModifier);
    EXPECT_EQ(browser.opened, QStringList{QStringLiteral("https://example.org/path")});
    EXPECT_EQ(closings, 1) << "the canvas lay over it";
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());

    canvas.click(placeOf(text, 0.2));
    EXPECT_EQ(canvas.model.focusedBlock(), text) << "a plain click is for typing";
    canvas.click(placeOf(text, 0.2), Qt::ControlModifier);
    EXPECT_EQ(browser.opened.size(), 2);
    canvas.model.endEditing();

    const BlockPtr note =
        canvas.add(BlockType::stickyNote, {100, -200, 200, 200}, QStringLiteral("https://example.org"));
    canvas.settle();
    canvas.click({530, 122}, Qt::ControlModifier);
    EXPECT_EQ(browser.opened.size(), 3);
    canvas.click({600, 250}, Qt::ControlModifier);
    EXPECT_EQ(browser.opened.size(), 3) << "below the text";
    EXPECT_TRUE(note->isSelected());
}

TEST_F(Links, AreSeenAndTheTextAroundThemIsWhereItWas) {
    const BlockPtr text =
        canvas.add(BlockType::text, {-300, -200, 100, 24}, QStringLiteral("https://example.org words"));
    const QSizeF size(text->width(), text->height());
    const auto accents = [this, &text] {
        canvas.settle();
        const QImage drawn = canvas.window.grabWindow();
        int count = 0;
        for (int x = 100; x < 100 + int(text->width()); ++x) {
            for (int y = 100; y < 124; ++y) {
                count += drawn.pixelColor(x, y) == Theme::shared().accent() ? 1 : 0;
            }
        }
        return count;
    };
    EXPECT_GT(accents(), 100) << "the line below it";
    text->setRawText(QStringLiteral("ittps://example.org words"));
    EXPECT_EQ(accents(), 0);
    EXPECT_NEAR(text->width(), size.width(), 8);
    text->setRawText(QStringLiteral("https://example.org words"));
    canvas.model.beginEditing(text);
    EXPECT_GT(accents(), 100) << "also while it is edited";
    EXPECT_NEAR(text->width(), size.width(), 1.5);
}

} // namespace

} // namespace tallowby

#include "LinksTest.moc"
