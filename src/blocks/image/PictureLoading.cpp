#include "blocks/image/PictureLoading.h"

#include "model/Block.h"

#include <QPainter>

#include <algorithm>

namespace tallowby {

namespace {

const QString kPayloadKey = QStringLiteral("payload");

QString mark(const QByteArray &payload) {
    return QString::number(qHash(payload));
}

} // namespace

LoadedPicture loadPicture(const PictureRequest &request, PictureDecoder &decoder) {
    const std::optional<QByteArray> file = imageDataIn(request.payload);
    if (!file) {
        return {};
    }
    DecodedPicture decoded = decoder.decode(*file, std::clamp(request.longestSide, 1, kLongestShownSide));
    if (decoded.image.isNull()) {
        return {.image = {}, .wholeSize = {}, .refusal = decoded.refusal};
    }
    // A block of this thread's own: the readers of a payload are its.
    Block flips(QUuid(), BlockType::image, {});
    flips.setContent(request.payload);
    decoded.image.mirror(flips.flipHorizontal(), flips.flipVertical());
    decoded.image.setText(kPayloadKey, mark(request.payload));
    return {.image = std::move(decoded.image),
            .wholeSize = decoded.size,
            .refusal = decoded.refusal,
            .isScalable = decoded.isScalable};
}

bool isLoadedFrom(const QImage &picture, const QByteArray &payload) {
    return picture.text(kPayloadKey) == mark(payload);
}

QImage withRepeatedEdge(const QImage &picture) {
    const int width = picture.width();
    const int height = picture.height();
    QImage wide(width + 2, height + 2,
                picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    QPainter painter(&wide);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(1, 1, picture);
    painter.drawImage(QRect(0, 1, 1, height), picture, QRect(0, 0, 1, height));
    painter.drawImage(QRect(width + 1, 1, 1, height), picture, QRect(width - 1, 0, 1, height));
    painter.end();
    const auto bytes = std::size_t(wide.bytesPerLine());
    std::copy_n(wide.constScanLine(1), bytes, wide.scanLine(0));
    std::copy_n(wide.constScanLine(height), bytes, wide.scanLine(height + 1));
    return wide;
}

} // namespace tallowby
