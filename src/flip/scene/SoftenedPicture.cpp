#include "flip/scene/SoftenedPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tallowby {

namespace {

constexpr int kReach = 14;
constexpr float kDeviation = 5;
constexpr float kSaturation = 1.5F;
/// Rec. 709.
constexpr float kRedLuminance = 0.2126F;
constexpr float kGreenLuminance = 0.7152F;
constexpr float kBlueLuminance = 0.0722F;

using Color = float __attribute__((vector_size(16)));

using Weights = std::array<float, 2 * kReach + 1>;

Weights gaussianWeights() {
    Weights weights{};
    float sum = 0;
    for (int i = -kReach; i <= kReach; ++i) {
        const float weight = std::exp(-float(i * i) / (2 * kDeviation * kDeviation));
        const int place = i + kReach;
        weights[std::size_t(place)] = weight;
        sum += weight;
    }
    for (float &weight : weights) {
        weight /= sum;
    }
    return weights;
}

/// Blurs each row and turns the picture over its diagonal: twice is both directions.
std::vector<Color> blurredAcross(const std::vector<Color> &source, int width, int height) {
    static const Weights kWeights = gaussianWeights();
    std::vector<Color> result(source.size());
    for (int y = 0; y < height; ++y) {
        const Color *const row = source.data() + std::ptrdiff_t(y) * width;
        for (int x = 0; x < width; ++x) {
            Color sum{};
            for (int i = -kReach; i <= kReach; ++i) {
                const int place = i + kReach;
                sum += row[std::clamp(x + i, 0, width - 1)] * kWeights[std::size_t(place)];
            }
            result[std::size_t(x) * std::size_t(height) + std::size_t(y)] = sum;
        }
    }
    return result;
}

QRgb veiled(Color color, Color veil, float strength) {
    const float luminance = kRedLuminance * color[0] + kGreenLuminance * color[1] + kBlueLuminance * color[2];
    for (int channel = 0; channel < 3; ++channel) {
        const float vivid = std::clamp(luminance + kSaturation * (color[channel] - luminance), 0.0F, 255.0F);
        color[channel] = vivid * (1 - strength) + veil[channel] * strength;
    }
    return qRgb(int(std::lround(color[0])), int(std::lround(color[1])), int(std::lround(color[2])));
}

} // namespace

QImage softened(const QImage &picture, const QColor &veil, double veilStrength) {
    if (picture.isNull()) {
        return {};
    }
    const int width = picture.width();
    const int height = picture.height();
    QImage result = picture.convertToFormat(QImage::Format_RGB32);
    std::vector<Color> colors(std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(result.constScanLine(y));
        std::transform(row, row + width, colors.begin() + std::ptrdiff_t(y) * width, [](QRgb pixel) {
            return Color{float(qRed(pixel)), float(qGreen(pixel)), float(qBlue(pixel)), 0};
        });
    }
    colors = blurredAcross(blurredAcross(colors, width, height), height, width);
    const Color veilColor{float(veil.red()), float(veil.green()), float(veil.blue()), 0};
    for (int y = 0; y < height; ++y) {
        auto *row = reinterpret_cast<QRgb *>(result.scanLine(y));
        std::transform(colors.begin() + std::ptrdiff_t(y) * width, colors.begin() + std::ptrdiff_t(y + 1) * width, row,
                       [&](Color color) { return veiled(color, veilColor, float(veilStrength)); });
    }
    return result;
}

} // namespace tallowby
