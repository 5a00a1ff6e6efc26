#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace tallowby {

/// Larger files and pictures are refused: they would hold up the canvas for seconds, and their records every save.
inline constexpr qsizetype kMaxPictureFile = 32 * 1024 * 1024;
inline constexpr qint64 kMaxPicturePixels = 100'000'000;
/// In bytes. A drawing takes far longer to draw than pixels of the same size take to decode.
inline constexpr qsizetype kMaxDrawingFile = 4 * 1024 * 1024;
/// The longest side that a picture is decoded to, in pixels.
inline constexpr int kMaxDecodedSide = 8192;
/// The longest side, in its own units, that a drawing may say it has.
inline constexpr int kMaxDrawingSide = 1'000'000;

enum class PictureRefusal {
    none,
    fileTooLarge,
    drawingTooLarge,
    notAPicture,
    tooManyPixels,
    noSize,
    damaged,
    tooSlow,
    tooMuchMemory,
    /// Nothing is known about the picture: it could not be looked at.
    unavailable,
};
inline constexpr int kPictureRefusalCount = int(PictureRefusal::unavailable) + 1;

/// Says why a picture was refused, to go after a colon. Any thread.
[[nodiscard]] QString describe(PictureRefusal refusal);

struct DecodedPicture {
    /// Null when the picture was refused.
    QImage image;
    /// The whole picture's size, the way up that its file says.
    QSize size;
    PictureRefusal refusal = PictureRefusal::none;
    /// True for a drawing, which can be had as fine as anybody likes; its size says how it is meant to be shown.
    bool isScalable = false;
};

/// Decodes picture files from outside, which are hostile until they have been decoded: where a picture's reader is
/// broken into, hangs or takes too much, that picture is refused and nothing else happens. Any thread.
class PictureDecoder {
public:
    /// A picture that takes longer is refused.
    static constexpr std::chrono::seconds kMaxDuration{8};

    virtual ~PictureDecoder() = default;

    /// Waits for the picture, which comes with at most `longestSide` pixels a side; a drawing comes with as many.
    [[nodiscard]] virtual DecodedPicture decode(const QByteArray &file, int longestSide) = 0;
    /// Lets go of what is only kept to make the next picture quicker.
    virtual void rest() = 0;
    /// Gives up what is being decoded and refuses everything from now on.
    virtual void stop() = 0;
};

/// The decoder of the system that this program was built for.
[[nodiscard]] std::unique_ptr<PictureDecoder> makePictureDecoder();

/// The decoder may be the same program in another role. Called first in main(), before anything of Qt is set up: when
/// the program was started for that role, it plays it and returns the exit code.
[[nodiscard]] std::optional<int> runAsPictureDecoder(int argc, char **argv);

} // namespace tallowby
