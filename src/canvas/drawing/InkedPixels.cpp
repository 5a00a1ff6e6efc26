#include "canvas/drawing/InkedPixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <span>

namespace tallowby {

namespace {

/// Empty pixels between two runs up to which they are one: a run costs more than a few pixels.
constexpr int kSmallGap = 8;
constexpr std::uint16_t kOpaque = 0xff;
/// How early the device's pixels are fetched, in rows: the next row of a line's pixels is too far away for the
/// processor to guess, and waiting for it would take longer than painting it.
constexpr int kRowsAhead = 4;
/// Pixels of the device that are looked up at a time.
constexpr int kMostSamples = 64;
/// In pixels of the device: far more than any screen, and little enough for the fixed-point numbers.
constexpr double kLargestPlaced = 1e8;

std::span<const std::uint32_t> rowOf(const QImage &picture, int y) {
    return {reinterpret_cast<const std::uint32_t *>(picture.constScanLine(y)), std::size_t(picture.width())};
}

/// The channels of two pixels that stand side by side. The compiler makes vector instructions of them.
using Pair = std::uint16_t __attribute__((vector_size(16)));
using PairBytes = std::uint8_t __attribute__((vector_size(8)));

Pair unpacked(const std::uint32_t *pixels) {
    PairBytes bytes;
    std::memcpy(&bytes, pixels, sizeof bytes);
    return __builtin_convertvector(bytes, Pair);
}

Pair over(Pair ink, Pair ground) {
    const Pair uncovered = kOpaque - __builtin_shuffle(ink, Pair{3, 3, 3, 3, 7, 7, 7, 7});
    const Pair shown = uncovered * ground + 128;
    // Divided by 255 and rounded.
    return ink + ((shown + (shown >> 8)) >> 8);
}

void paintRun(std::uint32_t *ground, const std::uint32_t *ink, int count) {
    const auto blend = [](std::uint32_t *onto, const std::uint32_t *pixels) {
        const PairBytes bytes = __builtin_convertvector(over(unpacked(pixels), unpacked(onto)), PairBytes);
        std::memcpy(onto, &bytes, sizeof bytes);
    };
    for (; count >= 2; count -= 2, ground += 2, ink += 2) {
        blend(ground, ink);
    }
    if (count == 1) {
        const std::uint32_t lastInk[2] = {*ink, 0};
        std::uint32_t lastGround[2] = {*ground, 0};
        blend(lastGround, lastInk);
        *ground = lastGround[0];
    }
}

/// One direction of a placement: which pixels of the device show which of the picture. In fixed-point numbers, since
/// most runs are so short that finding their ends is most of the work.
class Axis {
public:
    Axis(double start, double scale)
        : m_start(fixed(start - 0.5))
        , m_scale(fixed(scale))
        , m_step(fixed(1 / scale)) {}

    /// The first pixel of the device whose middle lies at or after that edge of a pixel of the picture.
    [[nodiscard]] int deviceAt(int edge) const { return int((m_start + edge * m_scale + kOne - 1) >> kBits); }
    /// The pixels of the picture that `count` pixels of the device from `device` on show, of those from `first` to
    /// `last`.
    template <typename Take>
    void sample(int device, int count, int first, int last, Take take) const {
        std::int64_t place =
            fixed((double(device) - double(m_start) / double(kOne)) / (double(m_scale) / double(kOne)));
        for (int i = 0; i < count; ++i, place += m_step) {
            take(i, std::clamp(int(place >> kBits), first, last));
        }
    }

private:
    static constexpr int kBits = 32;
    static constexpr std::int64_t kOne = std::int64_t(1) << kBits;

    static std::int64_t fixed(double value) { return std::int64_t(std::llround(value * double(kOne))); }

    std::int64_t m_start;
    std::int64_t m_scale;
    std::int64_t m_step;
};

} // namespace

double InkedPixels::inkOf(const QImage &picture) {
    qint64 inked = 0;
    for (int y = 0; y < picture.height(); ++y) {
        inked += std::ranges::count_if(rowOf(picture, y), [](std::uint32_t pixel) { return pixel != 0; });
    }
    return double(inked) / std::max(1.0, double(picture.width()) * picture.height());
}

InkedPixels::InkedPixels(const QImage &picture)
    : InkedPixels(picture.width()) {
    append(picture);
}

InkedPixels::InkedPixels(int width)
    : m_size(width, 0)
    , m_rowStarts{0} {}

void InkedPixels::append(const QImage &picture) {
    m_size.rheight() += picture.height();
    m_rowStarts.reserve(std::size_t(m_size.height()) + 1);
    for (int y = 0; y < picture.height(); ++y) {
        const auto row = rowOf(picture, y);
        const auto rowBegin = m_runs.size();
        for (int x = 0; x < m_size.width(); ++x) {
            if (row[std::size_t(x)] == 0) {
                continue;
            }
            if (m_runs.size() == rowBegin || x - m_runs.back().end > kSmallGap) {
                m_runs.push_back({x, x, m_pixels.size()});
            }
            Run &run = m_runs.back();
            m_pixels.insert(m_pixels.end(), row.begin() + run.end, row.begin() + x + 1);
            run.end = x + 1;
        }
        m_rowStarts.push_back(m_runs.size());
    }
    m_pixels.shrink_to_fit();
    m_runs.shrink_to_fit();
}

qint64 InkedPixels::sizeInBytes() const {
    const std::size_t bytes = m_pixels.size() * sizeof(std::uint32_t) + m_runs.size() * sizeof(Run) +
                              m_rowStarts.size() * sizeof(std::size_t);
    return qint64(bytes);
}

QImage InkedPixels::image() const {
    QImage image(m_size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < m_size.height(); ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(image.scanLine(y));
        for (std::size_t i = firstRunOf(y); i < firstRunOf(y + 1); ++i) {
            const Run &run = m_runs[i];
            std::memcpy(row + run.start, m_pixels.data() + run.offset,
                        std::size_t(run.end - run.start) * sizeof(std::uint32_t));
        }
    }
    return image;
}

void InkedPixels::paint(QImage &device, const Placement &placement, const QRect &clip) const {
    const QRect area = clip & device.rect();
    const QRectF placed(placement.topLeft,
                        QSizeF(m_size.width() * placement.scale.width(), m_size.height() * placement.scale.height()));
    if (!placed.intersects(area) || placed.width() > kLargestPlaced || placed.height() > kLargestPlaced) {
        return;
    }
    const Axis across(placed.x(), placement.scale.width());
    const Axis down(placed.y(), placement.scale.height());
    const bool isExact = placement.scale == QSizeF(1, 1);
    const int origin = across.deviceAt(0);
    std::array<std::uint32_t, kMostSamples> samples;
    const auto paintRow = [&](int row, std::uint32_t *ground) {
        for (std::size_t i = firstRunOf(row); i < firstRunOf(row + 1); ++i) {
            const Run &run = m_runs[i];
            const std::uint32_t *ink = m_pixels.data() + run.offset;
            if (isExact) {
                const int left = std::max(origin + run.start, area.left());
                const int right = std::min(origin + run.end, area.right() + 1);
                paintRun(ground + left, ink + (left - origin - run.start), right - left);
                continue;
            }
            int left = std::max(across.deviceAt(run.start), area.left());
            const int right = std::min(across.deviceAt(run.end), area.right() + 1);
            for (; left < right; left += kMostSamples) {
                const int count = std::min(right - left, kMostSamples);
                across.sample(left, count, run.start, run.end - 1,
                              [&](int sample, int pixel) { samples[std::size_t(sample)] = ink[pixel - run.start]; });
                paintRun(ground + left, samples.data(), count);
            }
        }
    };
    const auto fetch = [&](int row, const uchar *line) {
        if (row < m_size.height() && firstRunOf(row) < m_runs.size()) {
            const int x = std::clamp(origin + m_runs[firstRunOf(row)].start, area.left(), area.right());
            __builtin_prefetch(line + x * int(sizeof(std::uint32_t)), 1);
        }
    };
    const int top = std::max(down.deviceAt(0), area.top());
    const int bottom = std::min(down.deviceAt(m_size.height()), area.bottom() + 1);
    down.sample(top, bottom - top, 0, m_size.height() - 1, [&](int y, int row) {
        // The device has a painter already, which must not lose sight of its pixels: they are not asked for anew.
        const uchar *line = device.constScanLine(top + y);
        fetch(row + kRowsAhead, line + kRowsAhead * device.bytesPerLine());
        paintRow(row, reinterpret_cast<std::uint32_t *>(const_cast<uchar *>(line)));
    });
}

} // namespace tallowby
