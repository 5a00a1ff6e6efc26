#include "storage/ImageCacheService.h"

#include "model/Block.h"
#include "storage/MediaStorage.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFileInfo>

namespace tallowby {

namespace {

QImage picture(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

BlockPtr blockWith(const QImage &image) {
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    auto block = std::make_shared<Block>(QUuid(), BlockType::image, QRectF(0, 0, 10, 10));
    block->setContent("{\"image\":\"" + file.toBase64() + "\"}");
    return block;
}

} // namespace

TEST(ImageCache, KeepsTwentyAndDropsTheOneNotAskedForTheLongest) {
    ImageCacheService cache;
    std::vector<QUuid> ids;
    for (int i = 0; i < 20; ++i) {
        cache.set(picture(i + 1, 1), ids.emplace_back(QUuid::createUuid()));
    }
    EXPECT_EQ(cache.image(ids[0]).width(), 1);
    cache.set(picture(50, 1), QUuid::createUuid());
    EXPECT_TRUE(cache.image(ids[1]).isNull());
    EXPECT_EQ(cache.image(ids[0]).width(), 1);
    EXPECT_EQ(cache.image(ids[19]).width(), 20);
}

TEST(ImageCache, KeepsFortyMebibytes) {
    ImageCacheService cache;
    const QUuid first = QUuid::createUuid();
    const QUuid second = QUuid::createUuid();
    cache.set(picture(2560, 2048), first);
    cache.set(picture(2560, 2048), second);
    EXPECT_FALSE(cache.image(first).isNull() || cache.image(second).isNull()) << "together exactly the limit";
    cache.set(picture(1, 1), QUuid::createUuid());
    EXPECT_TRUE(cache.image(first).isNull());
    cache.set(picture(2561, 4096), second);
    EXPECT_TRUE(cache.image(second).isNull()) << "more than the limit by itself";
}

TEST(ImageCache, DecodesABlockOnce) {
    ImageCacheService cache;
    const BlockPtr block = blockWith(picture(40, 20));
    EXPECT_EQ(cache.uiImage(*block).size(), QSize(40, 20));
    block->setContent("{}");
    EXPECT_EQ(cache.uiImage(*block).size(), QSize(40, 20)) << "kept until it is replaced";
    EXPECT_EQ(cache.uiImage(*blockWith(picture(4096, 16))).size(), QSize(2048, 8));
    for (const char *broken : {"", "{}", R"({"image":""})", R"({"image":"QUJ*"})", R"({"image":"QUJD"})"}) {
        const auto other = std::make_shared<Block>(QUuid(), BlockType::image, QRectF());
        other->setContent(broken);
        EXPECT_TRUE(cache.uiImage(*other).isNull()) << broken;
        EXPECT_TRUE(cache.image(other->id()).isNull()) << broken;
    }
}

TEST(MediaStorage, HasOneFolderForTheUserAlone) {
    const test::TemporaryFolder folder;
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    const QString expected = folder.file(QStringLiteral("Tallowby/media"));
    EXPECT_EQ(MediaStorage::directory(), expected);
    EXPECT_EQ(MediaStorage::directory(), expected);
    EXPECT_TRUE(QDir(expected).exists());
    EXPECT_FALSE(QFileInfo(expected).permissions() & (QFile::ReadGroup | QFile::ReadOther));
    qputenv("XDG_DATA_HOME", before);
}

} // namespace tallowby
