#include "platform/QtPasteboard.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace tallowby {

namespace {

TEST(QtPasteboard, DecodesAPictureOnlyForThoseWhoDoNotTakeItsFile) {
    int decoded = 0;
    QtPasteboard pasteboard;
    pasteboard.write({.text = QStringLiteral("caption"),
                      .picture = PasteboardPicture{"a file of a photo", QStringLiteral("image/jpeg"),
                                                   [&decoded] {
                                                       ++decoded;
                                                       QImage pixels(30, 20, QImage::Format_RGB32);
                                                       pixels.fill(Qt::red);
                                                       return pixels;
                                                   }},
                      .data = {{QStringLiteral("application/x-block"), "records"}}});
    EXPECT_EQ(pasteboard.imageBytes(), "a file of a photo");
    EXPECT_EQ(pasteboard.text(), QStringLiteral("caption"));
    EXPECT_EQ(pasteboard.data(QStringLiteral("application/x-block")), "records");
    EXPECT_EQ(decoded, 0);
    const QMimeData *offered = QGuiApplication::clipboard()->mimeData();
    ASSERT_TRUE(offered->hasImage());
    EXPECT_EQ(offered->imageData().value<QImage>().size(), QSize(30, 20));
    EXPECT_EQ(offered->imageData().value<QImage>().pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(decoded, 1);
}

} // namespace

} // namespace tallowby
