#pragma once

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tallowby {

/// How the X server lays out a true-colour picture in memory: whole bytes for red, green and blue.
struct PixelLayout {
    int bytesPerPixel = 4;
    int redByte = 2;
    int greenByte = 1;
    int blueByte = 0;

    /// None when the channels are not bytes of their own, as on 16 or 30-bit displays.
    [[nodiscard]] static std::optional<PixelLayout> fromMasks(int bitsPerPixel, bool mostSignificantByteFirst,
                                                              std::uint32_t red, std::uint32_t green,
                                                              std::uint32_t blue);
};

/// Averages a picture down by a whole factor while its rows come in from top to bottom. At the right and lower edge,
/// where a whole square is not left, the rest of one is averaged.
class PixelReduction {
public:
    /// `size` in pixels of the source.
    PixelReduction(PixelLayout layout, QSize size, int factor);

    /// The next rows of the source, `stride` bytes apart.
    void addRows(const std::uint8_t *pixels, std::size_t stride, int count);
    /// The result, once all rows are in. Opaque, Format_RGB32.
    [[nodiscard]] QImage image() const { return m_image; }

private:
    struct Sum {
        std::uint32_t red = 0;
        std::uint32_t green = 0;
        std::uint32_t blue = 0;
    };

    void addRow(const std::uint8_t *pixels);
    void finishRow();

    PixelLayout m_layout;
    QSize m_size;
    int m_factor;
    QImage m_image;
    std::vector<Sum> m_sums;
    int m_rowsInSums = 0;
    int m_nextImageRow = 0;
};

} // namespace tallowby
