#include "platform/decoding/PictureReading.h"

#include "platform/decoding/DrawingReading.h"

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

DecodedPicture refused(PictureRefusal why) {
    return {.image = {}, .size = {}, .refusal = why};
}

bool isWithinBounds(QSize size) {
    return !size.isEmpty() && qint64(size.width()) * size.height() <= kMaxPicturePixels;
}

} // namespace

DecodedPicture readPicture(const QByteArray &file, int longestSide) {
    if (file.size() > kMaxPictureFile) {
        return refused(PictureRefusal::fileTooLarge);
    }
    if (looksLikeDrawing(file)) {
        return readDrawing(file, longestSide);
    }
    // Holds for the whole process; the default is too small for pictures that are within our own bounds.
    QImageReader::setAllocationLimit(int(kMaxPicturePixels * kBytesPerPixel / kBytesPerMegabyte) + 1);
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (std::ranges::find(kPixelFormats, QByteArrayView(reader.format())) == kPixelFormats.end()) {
        return refused(PictureRefusal::notAPicture);
    }
    const QSize stored = reader.size();
    if (stored.isValid() && !isWithinBounds(stored)) {
        return refused(PictureRefusal::tooManyPixels);
    }
    if (stored.isValid() && std::max(stored.width(), stored.height()) > longestSide) {
        reader.setScaledSize(stored.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return refused(PictureRefusal::damaged);
    }
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize whole = stored.isValid() ? (isTurned ? stored.transposed() : stored) : image.size();
    if (!isWithinBounds(whole)) {
        return refused(PictureRefusal::tooManyPixels);
    }
    if (std::max(image.width(), image.height()) > longestSide) {
        // A reader that does not know the size in advance cannot scale.
        image = image.scaled(longestSide, longestSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return {.image = std::move(image), .size = whole};
}

void loadPictureReaders() {
    for (const QByteArrayView format : kPixelFormats) {
        QBuffer nothing;
        nothing.open(QIODevice::ReadOnly);
        static_cast<void>(QImageReader(&nothing, format.toByteArray()).canRead());
    }
    loadDrawingReader();
}

} // namespace tallowby
