#pragma once

#include <QImage>
#include <QPointF>
#include <QRect>

#include <cstdint>
#include <vector>

namespace tallowby {

/// A picture of thin lines without the empty pixels between them: a twentieth of the memory, and of the work to paint
/// it. A value that may be made on any thread.
class InkedPixels {
public:
    /// Where the picture lies on a device, in its pixels.
    struct Placement {
        QPointF topLeft;
        /// Device pixels per pixel of the picture, across and down; positive.
        QSizeF scale{1, 1};
    };

    /// Of the pixels of a picture: with more of them inked, it is better kept as it is.
    static constexpr double kMostInk = 0.25;

    /// How much of the picture is inked, from 0 to 1. The picture is premultiplied ARGB of 32 bits.
    [[nodiscard]] static double inkOf(const QImage &picture);

    explicit InkedPixels(const QImage &picture);
    /// Of a picture of that width, without any rows yet.
    explicit InkedPixels(int width);
    /// Puts the rows of that picture, of the same width, below the others.
    void append(const QImage &picture);

    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] qint64 sizeInBytes() const;
    /// With the empty pixels again.
    [[nodiscard]] QImage image() const;
    /// Over what is on the device, of which 32 bits are a pixel, and nowhere but in the clip. Each pixel of the device
    /// gets the nearest one of the picture.
    void paint(QImage &device, const Placement &placement, const QRect &clip) const;

private:
    /// Pixels beside each other.
    struct Run {
        int start = 0;
        int end = 0;
        /// Of its first pixel in `m_pixels`.
        std::size_t offset = 0;
    };

    [[nodiscard]] std::size_t firstRunOf(int row) const { return m_rowStarts[std::size_t(row)]; }

    QSize m_size;
    std::vector<std::uint32_t> m_pixels;
    std::vector<Run> m_runs;
    /// The first run of each row, and the end of the last.
    std::vector<std::size_t> m_rowStarts;
};

} // namespace tallowby
