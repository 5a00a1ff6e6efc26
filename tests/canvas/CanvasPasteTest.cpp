#include "canvas/CanvasFixture.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace tallowby {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

QByteArray pictureFile(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return file;
}

struct CanvasPaste : test::CanvasFixture {
    QUrl file(const QString &name, const QByteArray &bytes) {
        QFile written(folder.filePath(name));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        written.write(bytes);
        return QUrl::fromLocalFile(written.fileName());
    }
    /// Waits until the canvas has so many blocks.
    bool blocksBecome(std::size_t count) {
        return test::waitUntil([this, count] { return model.blocks().size() == count; });
    }
    /// Waits for one more line in the log.
    bool isLogged(const char *part) {
        return test::waitUntil([this, part] { return lastLine().find(part) != std::string::npos; });
    }
    std::string lastLine() const { return log.lines().isEmpty() ? "" : log.lines().back().toStdString(); }

    QTemporaryDir folder;
    QStringList notices;
    QMetaObject::Connection listening =
        QObject::connect(&model, &CanvasViewModel::noticeRequested, [this](const QString &text) { notices << text; });
};

TEST_F(CanvasPaste, PicturesKeepTheirBytesAndGetASize) {
    const QByteArray wide = pictureFile({1000, 500});
    model.processAndInsertImage(wide, {0, 0});
    model.processAndInsertImage(pictureFile({200, 100}), {0, 0});
    EXPECT_TRUE(model.blocks().empty()) << "nothing is decoded here and now";
    ASSERT_TRUE(blocksBecome(2));
    const BlockPtr block = model.blocks().front();
    EXPECT_EQ(frame(*block), QRectF(-175, -87.5, 350, 175));
    EXPECT_EQ(block->imageData(), wide);
    EXPECT_TRUE(!block->isSelected() && !model.isAnyBlockEditing() && !model.canUndo());
    EXPECT_EQ(frame(*model.blocks().back()), QRectF(-100, -50, 200, 100));
    model.processAndInsertImage("no picture", {0, 0});
    EXPECT_TRUE(isLogged("[Canvas] ⚠️ A picture was not inserted: it is not a picture"));
    EXPECT_EQ(notices, QStringList(u"The picture was not inserted: it is not a picture"_qs));
    EXPECT_EQ(model.blocks().size(), 2U);
}

TEST_F(CanvasPaste, TakesTheFileThenThePictureThenTheText) {
    pasteboard.files = {file(u"a.png"_qs, pictureFile({10, 10}))};
    pasteboard.picture = pictureFile({20, 20});
    pasteboard.content.text = u"a\r\nb"_qs;
    model.handlePaste({});
    pasteboard.files = {file(u"notes.txt"_qs, "words"), file(u"b.png"_qs, pictureFile({10, 10}))};
    model.handlePaste({});
    pasteboard.picture = "broken";
    pasteboard.files.clear();
    model.handlePaste({100, 100});
    pasteboard = {};
    model.handlePaste({});
    ASSERT_TRUE(blocksBecome(3));
    EXPECT_EQ(model.blocks()[0]->width(), 10) << "in the order of the pastes, with what the pasteboard held then";
    EXPECT_EQ(model.blocks()[1]->width(), 20);
    const BlockPtr text = model.blocks()[2];
    EXPECT_EQ(text->rawTextOrEmpty(), u"a\nb"_qs);
    EXPECT_EQ(positionOf(*text), QPointF(50, 88));
    EXPECT_EQ(model.focusedBlock(), text);
    EXPECT_EQ(notices, QStringList()) << "something else came in place of what is no picture";

    pasteboard.files = {file(u"notes.txt"_qs, "words")};
    pasteboard.content.text = u"late"_qs;
    model.handlePaste({});
    ASSERT_TRUE(blocksBecome(4));
    EXPECT_EQ(model.focusedBlock(), text) << "the keyboard is not taken from whoever is typing";
}

TEST_F(CanvasPaste, DroppedFilesAreTakenOrRefusedOneByOne) {
    model.insertFiles({file(u"a.png"_qs, pictureFile({10, 10})), QUrl::fromLocalFile(folder.path()),
                       QUrl(u"https://example.org/b.png"_qs), file(u"c.png"_qs, pictureFile({10, 10}))},
                      {5, 5});
    ASSERT_TRUE(blocksBecome(2));
    EXPECT_EQ(positionOf(*model.blocks()[0]), QPointF(0, 0));
    EXPECT_EQ(positionOf(*model.blocks()[1]), QPointF(30, 30)) << "none covers another";
    EXPECT_EQ(log.lines().size(), 2);
    EXPECT_THAT(lastLine(), HasSubstr("b.png was not inserted: it is no file of this computer"));
    EXPECT_EQ(notices.back(), u"“b.png” was not inserted: it is no file of this computer"_qs);
}

TEST_F(CanvasPaste, AFrameThatHasGoneLosesNoPicture) {
    const BlockPtr empty = add(BlockType::image, {0, 0, 100, 100});
    model.fillPicture(*empty, file(u"a.png"_qs, pictureFile({10, 10})));
    model.deleteBlock(empty);
    ASSERT_TRUE(blocksBecome(1));
    EXPECT_EQ(frame(*model.blocks()[0]), QRectF(45, 45, 10, 10));
    EXPECT_FALSE(empty->imageData());
}

TEST_F(CanvasPaste, BlocksComeBackWholeUnderThePointer) {
    const BlockPtr sketch = draw({{0, 0}, {100, 0}});
    sketch->setRotation(15);
    model.toggleFlipVertical(sketch);
    const BlockPtr note = type(u"right"_qs, {550, 12});
    note->setTextColor(u"#ABCDEF"_qs);
    note->setStickyColor(u"mint"_qs);
    const BlockPtr first = type(u"left"_qs, {-50, -400});
    model.selectAll();
    model.copySelected();
    EXPECT_EQ(pasteboard.text(), u"left\n\nright"_qs) << "as they are read";

    const QUuid user = QUuid::createUuid();
    storage.setCurrentUserId(user);
    model.handlePaste({10'000, 0});
    ASSERT_EQ(model.blocks().size(), 6U);
    const auto copies = model.selectedBlocks();
    ASSERT_EQ(copies.size(), 3U);
    const QPointF offset = positionOf(*copies[0]) - positionOf(*sketch);
    EXPECT_GT(offset.x(), 9'000);
    EXPECT_EQ(copies[0]->sketchStrokes()[0].points[1].x, 100 + offset.x());
    EXPECT_TRUE(copies[0]->flipVertical());
    EXPECT_EQ(copies[0]->rotation(), 15);
    EXPECT_EQ(copies[1]->textColor(), u"#ABCDEF"_qs);
    EXPECT_EQ(copies[1]->stickyColor(), u"mint"_qs);
    EXPECT_EQ(positionOf(*copies[1]) - positionOf(*note), offset);
    EXPECT_EQ(copies[1]->userId(), user);
    EXPECT_NE(copies[1]->id(), note->id());
    for (int each = 0; each < 3; ++each) {
        model.undo();
    }
    EXPECT_EQ(model.blocks().size(), 3U);

    model.selectOnly(first);
    model.cutSelected();
    EXPECT_FALSE(first->isLive());
    model.undo();
    const QPointF center = frame(*first).center();
    model.handlePaste(center);
    EXPECT_EQ(positionOf(*model.blocks().back()), positionOf(*first) + QPointF(30, 30)) << "not on top of the original";
}

TEST_F(CanvasPaste, HostileBlocksAreRefusedWhole) {
    const BlockPtr block = type(u"kept"_qs);
    model.selectOnly(block);
    model.copySelected();
    const auto good = pasteboard.content.data;
    const auto with = [&](QByteArray records, const QByteArray &styles) {
        pasteboard.content = {.text = {}, .picture = {}, .data = {{good[0].first, records}, {good[1].first, styles}}};
    };
    for (const auto &[from, to] : std::vector<std::pair<QByteArray, QByteArray>>{{"\"width\":100", "\"width\":1e12"},
                                                                                 {"\"width\":100", "\"width\":1e999"},
                                                                                 {"]", ""},
                                                                                 {"\"id\"", "\"ib\""}}) {
        with(QByteArray(good[0].second).replace(from, to), good[1].second);
        (void) log.take();
        model.handlePaste({});
        EXPECT_EQ(model.blocks().size(), 1U) << to.toStdString();
        EXPECT_THAT(lastLine(), HasSubstr("[Canvas] ⚠️ The pasted blocks were not inserted: "));
    }
    with(good[0].second, "[[1]]");
    model.handlePaste({});
    EXPECT_EQ(model.blocks().size(), 2U) << "looks that do not fit are left out";
}

} // namespace

} // namespace tallowby
