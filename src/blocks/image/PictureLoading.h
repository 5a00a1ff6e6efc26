#pragma once

#include "platform/desktop/PictureDecoder.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace tallowby {

/// What is asked for: the picture in a payload, `longestSide` pixels long or as long as it is.
struct PictureRequest {
    QByteArray payload;
    int longestSide = 0;
};

struct LoadedPicture {
    /// Flipped as the payload says. Null when that has no picture, or one that is refused.
    QImage image;
    /// Of the whole picture, the right way up.
    QSize wholeSize;
    PictureRefusal refusal = PictureRefusal::none;
    /// A drawing: there is always a finer one than the whole size.
    bool isScalable = false;
};

/// The largest that is decoded, in pixels a side; more would leave no room for other pictures in memory.
inline constexpr int kLongestShownSide = 3072;

/// All three may run on any thread.
[[nodiscard]] LoadedPicture loadPicture(const PictureRequest &request, PictureDecoder &decoder);
/// True when a picture was loaded from that payload: the cache keeps pictures whose payload may have changed since.
[[nodiscard]] bool isLoadedFrom(const QImage &picture, const QByteArray &payload);
/// The picture with its outermost pixels repeated around it, for a brush: at the edges a brush mixes what it shows with
/// what lies beyond, which would be the opposite side.
[[nodiscard]] QImage withRepeatedEdge(const QImage &picture);

} // namespace tallowby
