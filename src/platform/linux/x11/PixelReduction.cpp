#include "platform/linux/x11/PixelReduction.h"

#include <algorithm>
#include <bit>

namespace tallowby {

namespace {

constexpr int kBitsPerByte = 8;

/// The place of a channel's byte in a pixel; none when the mask is not exactly one byte.
std::optional<int> byteOfMask(std::uint32_t mask, int bytesPerPixel, bool mostSignificantByteFirst) {
    const int shift = std::countr_zero(mask);
    if (mask == 0 || mask >> shift != 0xff || shift % kBitsPerByte != 0 || shift / kBitsPerByte >= bytesPerPixel) {
        return std::nullopt;
    }
    const int byte = shift / kBitsPerByte;
    return mostSignificantByteFirst ? bytesPerPixel - 1 - byte : byte;
}

} // namespace

std::optional<PixelLayout> PixelLayout::fromMasks(int bitsPerPixel, bool mostSignificantByteFirst, std::uint32_t red,
                                                  std::uint32_t green, std::uint32_t blue) {
    if (bitsPerPixel != 24 && bitsPerPixel != 32) {
        return std::nullopt;
    }
    const int bytes = bitsPerPixel / kBitsPerByte;
    const auto redByte = byteOfMask(red, bytes, mostSignificantByteFirst);
    const auto greenByte = byteOfMask(green, bytes, mostSignificantByteFirst);
    const auto blueByte = byteOfMask(blue, bytes, mostSignificantByteFirst);
    if (!redByte || !greenByte || !blueByte) {
        return std::nullopt;
    }
    return PixelLayout{bytes, *redByte, *greenByte, *blueByte};
}

PixelReduction::PixelReduction(PixelLayout layout, QSize size, int factor)
    : m_layout(layout)
    , m_size(size)
    , m_factor(factor)
    , m_image((size.width() + factor - 1) / factor, (size.height() + factor - 1) / factor, QImage::Format_RGB32)
    , m_sums(std::size_t(m_image.width())) {}

void PixelReduction::addRows(const std::uint8_t *pixels, std::size_t stride, int count) {
    for (int row = 0; row < count; ++row) {
        addRow(pixels + std::size_t(row) * stride);
        if (++m_rowsInSums == m_factor) {
            finishRow();
        }
    }
    if (m_rowsInSums > 0 && m_nextImageRow * m_factor + m_rowsInSums == m_size.height()) {
        finishRow();
    }
}

void PixelReduction::addRow(const std::uint8_t *pixels) {
    // Copies, so that the compiler need not fear that writing a sum changes them.
    const auto [bytesPerPixel, redByte, greenByte, blueByte] = m_layout;
    int remaining = m_size.width();
    for (Sum &target : m_sums) {
        const int count = std::min(m_factor, remaining);
        Sum sum = target;
        for (int index = 0; index < count; ++index) {
            sum.red += pixels[redByte];
            sum.green += pixels[greenByte];
            sum.blue += pixels[blueByte];
            pixels += bytesPerPixel;
        }
        target = sum;
        remaining -= count;
    }
}

void PixelReduction::finishRow() {
    auto *line = reinterpret_cast<QRgb *>(m_image.scanLine(m_nextImageRow++));
    int remaining = m_size.width();
    for (Sum &sum : m_sums) {
        const auto count = std::uint32_t(std::min(m_factor, remaining) * m_rowsInSums);
        const std::uint32_t half = count / 2; // Rounds to the nearest.
        *line++ = qRgb(int((sum.red + half) / count), int((sum.green + half) / count), int((sum.blue + half) / count));
        remaining -= m_factor;
        sum = {};
    }
    m_rowsInSums = 0;
}

} // namespace tallowby
