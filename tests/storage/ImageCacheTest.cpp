#include "storage/ImageCacheService.h"

#include "storage/MediaStorage.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

namespace tallowby {

namespace {

QImage picture(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
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

TEST(ImageCache, SizesStayWhenThePictureHasGone) {
    ImageCacheService cache;
    const QUuid id = QUuid::createUuid();
    EXPECT_EQ(cache.pictureSize(id), std::nullopt);
    cache.setPictureSize({400, 200}, id);
    cache.set({}, id);
    EXPECT_EQ(cache.pictureSize(id), QSize(400, 200));
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
