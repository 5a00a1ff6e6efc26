#include "flip/scene/TurnedCard.h"

#include "flip/scene/CardTransform.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace tallowby {

namespace {

/// Weights have seven bits, so that a weighed difference of two channels fits 16 bits with its sign.
constexpr int kWeightBits = 7;
constexpr int kOne = 1 << kWeightBits;
/// Places on the card are fixed-point numbers.
constexpr int kPlaceBits = 16;

/// Cosines up to this show less of the card than can be seen.
constexpr double kEdgeOn = 1e-4;

/// The channels of one pixel, and of two that stand side by side. The compiler makes vector instructions of them.
using Pixel = std::int16_t __attribute__((vector_size(8)));
using Pair = std::int16_t __attribute__((vector_size(16)));
using PixelBytes = std::uint8_t __attribute__((vector_size(4)));
using PairBytes = std::uint8_t __attribute__((vector_size(8)));

template <typename Channels>
Channels mixed(Channels first, Channels second, int secondWeight) {
    return first + (((second - first) * std::int16_t(secondWeight)) >> kWeightBits);
}

Pixel scaled(Pixel pixel, int weight) {
    return (pixel * std::int16_t(weight)) >> kWeightBits;
}

Pixel unpacked(std::uint32_t pixel) {
    PixelBytes bytes;
    std::memcpy(&bytes, &pixel, sizeof bytes);
    return __builtin_convertvector(bytes, Pixel);
}

Pair unpackedPair(const std::uint32_t *pixels) {
    PairBytes bytes;
    std::memcpy(&bytes, pixels, sizeof bytes);
    return __builtin_convertvector(bytes, Pair);
}

std::uint32_t packed(Pixel pixel) {
    const PixelBytes bytes = __builtin_convertvector(pixel, PixelBytes);
    std::uint32_t result = 0;
    std::memcpy(&result, &bytes, sizeof result);
    return result;
}

/// What a column of the view shows of the card.
struct Column {
    /// Of the picture's columns, the left one of the two between which this column lies, and the weight of the right.
    int texel = 0;
    int fraction = 0;
    /// Which of the picture's rows the view's first row shows, were it so tall, and how far on the next one is.
    std::int32_t firstRow = 0;
    std::int32_t step = 0;
    /// The rows of the view that the picture reaches, its edges included in part.
    float top = 0;
    float bottom = 0;
    /// How much of the column the picture covers: less at its left and right edge.
    int coverage = 0;
};

std::int32_t fixedPoint(double value) {
    return std::int32_t(std::lround(value * (1 << kPlaceBits)));
}

struct Projection {
    std::vector<Column> columns;
    int first = 0;
    int end = 0;
};

/// The inverse of the card's matrix, column by column: on the card, x = s / (cos θ − k s) from the centre, where s is
/// the column's distance from the centre and k = sin θ / viewer's distance; lines are wider apart by cos θ / (cos θ − k
/// s).
Projection project(const TurnedFace &face, QSize view) {
    Projection projection{std::vector<Column>(std::size_t(view.width())), view.width(), 0};
    const double cosine = std::cos(face.angle);
    const double k = -CardTransform::m34(view) * std::sin(face.angle);
    const QPointF centre(view.width() / 2.0, view.height() / 2.0);
    const QRectF place(face.place);
    const auto onCard = [cosine, k](double fromCentre) { return fromCentre / (cosine - k * fromCentre); };
    for (int x = 0; x < view.width(); ++x) {
        const double fromCentre = x + 0.5 - centre.x();
        const double denominator = cosine - k * fromCentre;
        if (cosine <= kEdgeOn || denominator <= 0) {
            continue;
        }
        const double left = onCard(fromCentre - 0.5) + centre.x();
        const double right = onCard(fromCentre + 0.5) + centre.x();
        const double covered = std::min(right, place.right()) - std::max(left, place.left());
        if (covered <= 0) {
            continue;
        }
        Column &column = projection.columns[std::size_t(x)];
        column.coverage = int(std::lround(kOne * std::min(1.0, covered / (right - left))));
        const double scale = cosine / denominator;
        column.top = float((place.top() - centre.y()) / scale + centre.y());
        column.bottom = float((place.bottom() - centre.y()) / scale + centre.y());
        column.step = fixedPoint(scale);
        column.firstRow = fixedPoint((0.5 - centre.y()) * scale + centre.y() - place.top() - 0.5);
        // Between the middles of the outermost texels.
        const double texel = std::clamp(onCard(fromCentre) + centre.x() - place.left() - 0.5, 0.0, place.width() - 1.0);
        column.texel = std::min(int(texel), face.place.width() - 2);
        column.fraction = int(std::lround((texel - column.texel) * kOne));
        projection.first = std::min(projection.first, x);
        projection.end = x + 1;
    }
    return projection;
}

/// The rows of an image as 32-bit pixels.
class Rows {
public:
    explicit Rows(const QImage &image)
        : m_bits(image.constBits())
        , m_stride(image.bytesPerLine()) {}

    [[nodiscard]] const std::uint32_t *operator[](int y) const {
        return reinterpret_cast<const std::uint32_t *>(m_bits + y * m_stride);
    }

private:
    const uchar *m_bits;
    qsizetype m_stride;
};

class Painter {
public:
    Painter(const TurnedFace &face, const QImage &ground)
        : m_projection(project(face, ground.size()))
        , m_picture(face.picture)
        , m_ground(ground)
        , m_lastRow(face.place.height() - 1)
        , m_width(ground.width())
        , m_light(int(std::lround(kOne * (1 - face.shade)))) {}

    template <bool isOpaque>
    void paintRow(int y, std::uint32_t *target) const {
        const std::uint32_t *const ground = m_ground[y];
        paintGround(ground, target, 0, m_projection.first);
        for (int x = m_projection.first; x < m_projection.end; ++x) {
            const Column &column = m_projection.columns[std::size_t(x)];
            const float reach = std::min(float(y + 1) - column.top, column.bottom - float(y));
            if (reach <= 0) {
                target[x] = shaded(ground[x]);
                continue;
            }
            const Pixel pixel = sample(column, y);
            const int weight = reach >= 1 ? column.coverage : int(reach * float(column.coverage));
            if (isOpaque && weight == kOne) {
                target[x] = packed(scaled(pixel, m_light));
            } else {
                // Premultiplied: what the picture does not cover lets the ground through. Rounded up, so that the sum
                // of both stays a channel's value.
                const int opacity = isOpaque ? weight : ((pixel[3] + (pixel[3] >> 7)) * weight + 255) / 256;
                target[x] =
                    packed(scaled(scaled(pixel, weight) + scaled(unpacked(ground[x]), kOne - opacity), m_light));
            }
        }
        paintGround(ground, target, std::max(m_projection.first, m_projection.end), m_width);
    }

private:
    [[nodiscard]] std::uint32_t shaded(std::uint32_t pixel) const { return packed(scaled(unpacked(pixel), m_light)); }

    void paintGround(const std::uint32_t *ground, std::uint32_t *target, int from, int end) const {
        for (int x = from; x < end; ++x) {
            target[x] = shaded(ground[x]);
        }
    }

    [[nodiscard]] Pixel sample(const Column &column, int y) const {
        const std::int32_t place = column.firstRow + y * column.step;
        const int row = std::clamp(place >> kPlaceBits, 0, m_lastRow);
        const int next = std::min(row + 1, m_lastRow);
        const int fraction = (place >> (kPlaceBits - kWeightBits)) & (kOne - 1);
        const Pair pair =
            mixed(unpackedPair(m_picture[row] + column.texel), unpackedPair(m_picture[next] + column.texel), fraction);
        const auto left = __builtin_shufflevector(pair, pair, 0, 1, 2, 3);
        const auto right = __builtin_shufflevector(pair, pair, 4, 5, 6, 7);
        return mixed(left, right, column.fraction);
    }

    Projection m_projection;
    Rows m_picture;
    Rows m_ground;
    int m_lastRow;
    int m_width;
    int m_light;
};

} // namespace

void paintTurnedFace(const TurnedFace &face, const QImage &ground, QImage &target) {
    Q_ASSERT(face.picture.size() == face.place.size() && face.place.width() != 1);
    Q_ASSERT(ground.size() == target.size() && target.format() == QImage::Format_RGB32);
    const Painter painter(face, ground);
    const bool isOpaque = !face.picture.hasAlphaChannel();
    uchar *const bits = target.bits();
    for (int y = 0; y < target.height(); ++y) {
        auto *const row = reinterpret_cast<std::uint32_t *>(bits + y * target.bytesPerLine());
        if (isOpaque) {
            painter.paintRow<true>(y, row);
        } else {
            painter.paintRow<false>(y, row);
        }
    }
}

} // namespace tallowby
