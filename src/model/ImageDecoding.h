#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

namespace tallowby {

/// Larger files and pictures are refused: they would hold up the canvas for seconds, and their records every save.
inline constexpr qsizetype kLargestPictureFile = 32 * 1024 * 1024;
inline constexpr qint64 kMostPicturePixels = 100'000'000;

struct DecodedPicture {
    /// Null when it was refused.
    QImage image;
    /// Of the whole picture, the way up that its file says.
    QSize size;
    /// Why it was refused, to go after the name of what it was; empty when it was not.
    QString refusal;
    /// Whether it can be had as fine as anybody likes: a drawing, whose size says how it is meant to be shown.
    bool isScalable = false;
};

/// Decodes a picture file from outside. Only pixel formats and SVG are taken, and what a header claims is checked
/// before any pixel is decoded. With `longestSide` above 0 the image comes no larger than that, and a drawing as large;
/// `size` tells the whole size.
[[nodiscard]] DecodedPicture decodePicture(const QByteArray &file, int longestSide = 0);

} // namespace tallowby
