#include "blocks/CanvasDriver.h"
#include "blocks/image/ImageBlockContent.h"
#include "canvas/overlay/notice/CanvasNoticeView.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"
#include "storage/ImageCacheService.h"
#include "support/EndlessDrawing.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>

namespace tallowby {

namespace {

using namespace std::chrono_literals;

/// Red on the left and blue on the right.
QByteArray twoHalves(QSize size, const char *format = "PNG") {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixelColor(x, y, x < size.width() / 2 ? Qt::red : Qt::blue);
        }
    }
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format, 95)) << format;
    return file;
}

/// An EXIF segment that says: turn a quarter clockwise to see it right.
QByteArray turned(const QByteArray &jpeg) {
    const QByteArray exif =
        QByteArray::fromHex("ffe1002245786966000049492a0008000000010012010300010000000600000000000000");
    return jpeg.first(2) + exif + jpeg.sliced(2);
}

/// A PNG whose header claims that many pixels a side.
QByteArray claiming(quint32 side) {
    QByteArray file = twoHalves({4, 4});
    for (int i = 0; i < 4; ++i) {
        file[16 + i] = file[20 + i] = char(side >> (24 - 8 * i));
    }
    const auto crc = [](const QByteArray &bytes) {
        quint32 sum = ~0U;
        for (const char byte : bytes) {
            sum ^= uchar(byte);
            for (int bit = 0; bit < 8; ++bit) {
                sum = (sum >> 1) ^ ((sum & 1U) ? 0xEDB88320U : 0U);
            }
        }
        return ~sum;
    };
    const quint32 sum = crc(file.mid(12, 17));
    for (int i = 0; i < 4; ++i) {
        file[29 + i] = char(sum >> (24 - 8 * i));
    }
    return file;
}

/// The same halves as a drawing of 20 by 10.
const QByteArray kDrawing("<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                          "<rect width='10' height='10' fill='#f00'/><rect x='10' width='10' height='10' "
                          "fill='#00f'/></svg>");

bool isAbout(const QColor &color, const QColor &expected) {
    return std::abs(color.red() - expected.red()) + std::abs(color.green() - expected.green()) +
               std::abs(color.blue() - expected.blue()) <
           60;
}

struct PictureBodies : testing::Test {
    BlockPtr addImage(const QByteArray &file, const QRectF &frame, const QByteArray &more = {}) {
        const BlockPtr block = canvas.add(BlockType::image, frame);
        block->setContent("{\"image\":\"" + file.toBase64() + '"' + more + '}');
        return block;
    }
    ImageBlockContent &bodyOf(const BlockPtr &block) {
        return *qobject_cast<ImageBlockContent *>(canvas.containers().at(block.get())->body());
    }
    bool isShown(const BlockPtr &block) {
        return test::waitUntil([&] { return bodyOf(block).isShown(); });
    }
    bool blocksBecome(std::size_t count) {
        return test::waitUntil([this, count] { return canvas.model.blocks().size() == count; });
    }
    QColor pixel(QPoint at) {
        canvas.settle();
        return canvas.window.grabWindow().pixelColor(at);
    }
    QUrl write(const QString &name, const QByteArray &bytes) {
        QFile file(folder.file(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return QUrl::fromLocalFile(file.fileName());
    }

    test::TemporaryFolder folder;
    test::CanvasDriver canvas;
};

} // namespace

TEST_F(PictureBodies, EveryFormatIsShownTheRightWayUp) {
    struct Case {
        const char *name;
        QByteArray file;
        QByteArray more;
        QPoint red;
        QPoint blue;
    };
    // The blocks cover the points 300 to 500 across and 250 to 350 down.
    const Case cases[] = {
        {"PNG", twoHalves({400, 200}), {}, {320, 300}, {480, 300}},
        {"JPEG", twoHalves({400, 200}, "JPEG"), {}, {320, 300}, {480, 300}},
        {"WebP", twoHalves({400, 200}, "WEBP"), {}, {320, 300}, {480, 300}},
        {"flipped", twoHalves({400, 200}), ",\"flipHorizontal\":true", {480, 300}, {320, 300}},
        {"flipped upside down", twoHalves({400, 200}), ",\"flipVertical\":true", {320, 300}, {480, 300}},
        {"SVG", kDrawing, {}, {320, 300}, {480, 300}},
        {"SVG, flipped", kDrawing, ",\"flipHorizontal\":true", {480, 300}, {320, 300}},
        {"turned by EXIF", turned(twoHalves({100, 200}, "JPEG")), {}, {400, 260}, {400, 340}},
        {"a tiny one", twoHalves({2, 1}), {}, {303, 300}, {497, 300}},
    };
    for (const Case &each : cases) {
        const BlockPtr block = addImage(each.file, {-100, -50, 200, 100}, each.more);
        ASSERT_TRUE(isShown(block)) << each.name;
        EXPECT_TRUE(isAbout(pixel(each.red), Qt::red)) << each.name << qPrintable(pixel(each.red).name());
        EXPECT_TRUE(isAbout(pixel(each.blue), Qt::blue)) << each.name << qPrintable(pixel(each.blue).name());
        EXPECT_FALSE(isAbout(pixel({300, 250}), Qt::red)) << "a corner is round";
        canvas.model.deleteBlock(block);
    }
}

TEST_F(PictureBodies, IsDecodedAtWhatIsShownAndAgainWhenTheZoomHasSettled) {
    const BlockPtr block = addImage(twoHalves({1600, 800}), {-100, -50, 200, 100});
    ASSERT_TRUE(isShown(block));
    const auto decoded = [&block] { return ImageCacheService::shared().image(block->id()).width(); };
    EXPECT_EQ(decoded(), 300) << "one and a half times what is shown";
    canvas.wheel({400, 300}, {0, 240 * 8}, Qt::ControlModifier);
    canvas.settle();
    EXPECT_EQ(decoded(), 300);
    canvas.scheduler.advance(1s);
    EXPECT_TRUE(test::waitUntil([&] { return decoded() == 900; })) << decoded();
    const BlockPtr drawing = addImage(kDrawing, {-100, 60, 200, 100});
    ASSERT_TRUE(isShown(drawing));
    EXPECT_EQ(ImageCacheService::shared().image(drawing->id()).width(), 900) << "a drawing is as fine as is wanted";
    canvas.model.updateVisibleBlocks({5000, 5000, 100, 100}, 1);
    EXPECT_FALSE(canvas.containers().contains(block.get()));
    canvas.model.updateVisibleBlocks({-400, -300, 800, 600}, 1);
    EXPECT_TRUE(bodyOf(block).isShown()) << "at once, from the cache";

    canvas.view->resetZoom();
    canvas.model.updateVisibleBlocks({5000, 5000, 100, 100}, 1);
    block->setContentField(QStringLiteral("flipHorizontal"), AnyCodable(true));
    canvas.model.updateVisibleBlocks({-400, -300, 800, 600}, 1);
    EXPECT_TRUE(test::waitUntil([&] { return isAbout(pixel({320, 300}), Qt::blue); })) << "changed out of sight";
}

TEST_F(PictureBodies, WhatCannotBeShownSaysWhy) {
    const BlockPtr bomb = addImage(claiming(60'000), {-350, -250, 200, 150});
    const BlockPtr words = addImage("no picture at all", {-100, -250, 200, 150});
    const BlockPtr broken = canvas.add(BlockType::image, {150, -250, 200, 150});
    broken->setContent(R"({"image":"QUJ*"})");
    EXPECT_TRUE(
        test::waitUntil([&] { return !bodyOf(bomb).message().isEmpty() && !bodyOf(words).message().isEmpty(); }));
    EXPECT_EQ(bodyOf(bomb).message(),
              QStringLiteral("This picture could not be shown: it has more than 100 megapixels"));
    EXPECT_EQ(bodyOf(words).message(), QStringLiteral("This picture could not be shown: it is not a picture"));
    EXPECT_TRUE(bodyOf(broken).isEmpty() && bodyOf(broken).message().isEmpty());
    EXPECT_FALSE(bodyOf(bomb).isShown() || bodyOf(bomb).isEmpty());
    canvas.settle();
}

TEST_F(PictureBodies, AnEmptyOneTakesWhatIsDroppedAndPasted) {
    const QUrl picture = write(QStringLiteral("a.png"), twoHalves({400, 100}));
    const BlockPtr dropped = canvas.add(BlockType::image, {-150, -100, 300, 200});
    dropped->setContent(R"({"image":"","kept":7})");
    dropped->setNeedsSync(false);
    canvas.drop({400, 300}, {write(QStringLiteral("words.txt"), "words")});
    EXPECT_TRUE(test::waitUntil([this] { return canvas.log.lines().size() == 1; }));
    EXPECT_EQ(canvas.model.blocks().size(), 1U);
    EXPECT_FALSE(dropped->needsSync());
    auto *notice = canvas.view->findChild<CanvasNoticeView *>();
    ASSERT_TRUE(notice);
    EXPECT_TRUE(notice->isShown());
    EXPECT_EQ(notice->text(), QStringLiteral("“words.txt” was not inserted: it is not a picture"));
    canvas.scheduler.advance(CanvasNoticeView::kDuration);
    EXPECT_FALSE(notice->isShown());
    canvas.drop({400, 300}, {picture});
    ASSERT_TRUE(test::waitUntil([&] { return dropped->imageData() == twoHalves({400, 100}); }));
    ASSERT_EQ(canvas.model.blocks().size(), 1U);
    EXPECT_TRUE(dropped->content().contains("\"kept\":7"));
    EXPECT_TRUE(dropped->needsSync());
    EXPECT_EQ(QRectF(dropped->xPosition(), dropped->yPosition(), dropped->width(), dropped->height()),
              QRectF(-150, -37.5, 300, 75));
    EXPECT_TRUE(isShown(dropped));
    canvas.drop({400, 300}, {picture});
    EXPECT_TRUE(blocksBecome(2)) << "one that has a picture keeps it";

    const BlockPtr pasted = canvas.model.spawnBlock({0, 200}, BlockType::image);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    canvas.pasteboard.picture = twoHalves({40, 20});
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(test::waitUntil([&] { return pasted->imageData() == twoHalves({40, 20}); }));
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(blocksBecome(4));
}

TEST_F(PictureBodies, APictureThatHangsCostsThatPictureOnly) {
    canvas.pasteboard.picture = test::endlessDrawing();
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    const BlockPtr synced = addImage(canvas.pasteboard.picture, {-350, -250, 200, 150});
    canvas.pasteboard.picture = twoHalves({40, 20});
    canvas.press(Qt::Key_V, Qt::ControlModifier);
    const BlockPtr other = addImage(twoHalves({40, 20}), {150, -250, 200, 100});
    EXPECT_TRUE(isShown(other)) << "meanwhile";
    canvas.drag({250, 125}, {260, 125});
    EXPECT_EQ(synced->xPosition(), -340);
    ASSERT_TRUE(test::waitUntil([&] { return canvas.model.blocks().size() == 3; }, 20s));
    EXPECT_EQ(canvas.model.blocks().back()->imageData(), twoHalves({40, 20})) << "after the one before was given up";
    EXPECT_TRUE(test::waitUntil([&] { return !bodyOf(synced).message().isEmpty(); }, 20s));
    EXPECT_EQ(bodyOf(synced).message(), QStringLiteral("This picture could not be shown: it takes too long to open"));
}

TEST_F(PictureBodies, KindsWithoutAnEditorLeaveTheKeysToTheCanvas) {
    for (const BlockType type : {BlockType::divider, BlockType::automation, BlockType::sketch, BlockType::voiceNote,
                                 BlockType::videoNote, BlockType::image}) {
        const BlockPtr block = canvas.model.spawnBlock({0, 0}, type);
        canvas.press(Qt::Key_Right);
        EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << int(type);
        EXPECT_TRUE(block->isSelected()) << int(type);
        const double x = block->xPosition();
        canvas.press(Qt::Key_Right);
        EXPECT_EQ(block->xPosition(), x + 2) << int(type);
        canvas.press(Qt::Key_Delete);
        EXPECT_FALSE(block->isLive()) << int(type);
    }
}

TEST_F(PictureBodies, ADividerIsSeenAtEveryZoom) {
    canvas.add(BlockType::divider, {-100, -10, 200, 20});
    const QColor ink = Theme::shared().inkSoft();
    const QColor paper = Theme::shared().canvas();
    const QColor rule((ink.red() + paper.red()) / 2, (ink.green() + paper.green()) / 2,
                      (ink.blue() + paper.blue()) / 2);
    for (const int steps : {0, -20, 40}) {
        for (int i = 0; i < std::abs(steps); ++i) {
            steps < 0 ? canvas.view->zoomOut() : canvas.view->zoomIn();
        }
        canvas.settle();
        const QImage drawn = canvas.window.grabWindow();
        int inked = 0;
        for (int y = 290; y < 310; ++y) {
            inked += drawn.pixelColor(395, y) == rule ? 1 : 0;
        }
        EXPECT_EQ(inked, std::max(1, int(std::lround(2 * canvas.view->zoom())))) << canvas.view->zoom();
    }
}

TEST_F(PictureBodies, AnIconIsChosenByKeys) {
    const BlockPtr block = canvas.model.spawnBlock({0, 0}, BlockType::icon);
    block->setNeedsSync(false);
    canvas.settle();
    ASSERT_TRUE(canvas.focus()->inherits("QQuickTextInput")) << "the field has the keyboard";
    canvas.type(QStringLiteral("love"));
    canvas.press(Qt::Key_Right);
    canvas.press(Qt::Key_Return);
    EXPECT_EQ(block->iconName(), QStringLiteral("heart.fill"));
    EXPECT_TRUE(block->needsSync());
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    canvas.settle();
    EXPECT_EQ(canvas.focus(), canvas.view.get());
    EXPECT_EQ(canvas.containers().at(block.get())->accessibleName(), QStringLiteral("Icon: heart fill"));

    canvas.press(Qt::Key_Return);
    ASSERT_TRUE(canvas.model.isAnyBlockEditing());
    canvas.settle();
    canvas.press(Qt::Key_Down);
    canvas.press(Qt::Key_Escape);
    EXPECT_EQ(block->iconName(), QStringLiteral("heart.fill"));
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());

    block->setContent(R"({"iconName":"../../etc/passwd#?/x"})");
    EXPECT_EQ(canvas.containers().at(block.get())->body()->property("symbol"), QStringLiteral("questionmark.square"));
    block->setContent(R"({"iconName":7})");
    EXPECT_EQ(canvas.containers().at(block.get())->body()->property("symbol"), QStringLiteral("star"));
    canvas.settle();
}

TEST_F(PictureBodies, TheMenuOffersWhatTheKindCanDo) {
    const auto first = [this](const BlockPtr &block) {
        const std::vector<MenuEntry> entries = canvas.view->menuEntriesOf(*block);
        return entries.empty() ? QString() : entries.front().text;
    };
    const BlockPtr empty = canvas.add(BlockType::image, {-300, -200, 200, 100});
    const BlockPtr full = addImage(twoHalves({40, 20}, "JPEG"), {100, 0, 40, 20});
    ASSERT_TRUE(isShown(full));
    EXPECT_EQ(first(empty), QStringLiteral("Choose picture…"));
    EXPECT_EQ(first(full), QStringLiteral("Save image as…"));
    EXPECT_EQ(first(canvas.add(BlockType::divider, {0, 0, 10, 10})), QString());

    const auto entries = canvas.view->menuEntriesOf(*full);
    ASSERT_EQ(entries.back().text, QStringLiteral("Copy image"));
    entries.back().action();
    const auto &picture = canvas.pasteboard.content.picture;
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->file, full->imageData());
    EXPECT_EQ(picture->mimeType, QStringLiteral("image/jpeg"));
    EXPECT_EQ(picture->decode().size(), QSize(40, 20));
    EXPECT_TRUE(canvas.pasteboard.content.data.isEmpty()) << "the picture and nothing of the block";
}

} // namespace tallowby
