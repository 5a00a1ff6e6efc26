#include "model/ImageDecoding.h"

#include "model/SvgDecoding.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

constexpr int kBytesPerPixel = 4;
constexpr int kBytesPerMegabyte = 1024 * 1024;
/// Documents (PDF) are programs of a kind and stay out, and drawings have a way of their own.
constexpr std::array<QByteArrayView, 11> kPixelFormats{"png", "jpeg", "jpg", "gif",  "bmp", "webp",
                                                       "tif", "tiff", "ico", "avif", "heif"};

DecodedPicture refused(const QString &why) {
    return {.image = {}, .size = {}, .refusal = why};
}

bool isWithinBounds(QSize size) {
    return !size.isEmpty() && qint64(size.width()) * size.height() <= kMostPicturePixels;
}

} // namespace

DecodedPicture decodePicture(const QByteArray &file, int longestSide) {
    if (file.size() > kLargestPictureFile) {
        return refused(QStringLiteral("it is larger than 32 MiB"));
    }
    if (looksLikeSvg(file)) {
        return decodeSvg(file, longestSide);
    }
    // Holds for the whole process; the default is too small for pictures that are within our own bounds.
    QImageReader::setAllocationLimit(int(kMostPicturePixels * kBytesPerPixel / kBytesPerMegabyte) + 1);
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    if (std::ranges::find(kPixelFormats, QByteArrayView(format)) == kPixelFormats.end()) {
        return refused(QStringLiteral("it is no picture"));
    }
    const QSize stored = reader.size();
    if (stored.isValid() && !isWithinBounds(stored)) {
        return refused(QStringLiteral("it has more than 100 megapixels"));
    }
    if (longestSide > 0 && stored.isValid() && std::max(stored.width(), stored.height()) > longestSide) {
        reader.setScaledSize(stored.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return refused(QStringLiteral("it cannot be decoded: ") + reader.errorString());
    }
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize whole = stored.isValid() ? (isTurned ? stored.transposed() : stored) : image.size();
    if (!isWithinBounds(whole)) {
        return refused(QStringLiteral("it has more than 100 megapixels"));
    }
    return {.image = std::move(image), .size = whole, .refusal = {}};
}

} // namespace tallowby
