#include "platform/theme/ThemeImageProvider.h"

#include "platform/theme/SymbolTable.h"

#include <QImage>
#include <QPainter>
#include <QQmlEngine>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tallowby {

namespace {

const QString kProviderId = QStringLiteral("theme");
constexpr int kSymbolSize = 16;
constexpr int kLargestSymbol = 1024;
constexpr int kLargestShadow = 256;
constexpr double kLargestPixelRatio = 4;

QImage symbolImage(const QString &name, const QColor &color, QSize requested) {
    const QSize size = requested.isEmpty() ? QSize(kSymbolSize, kSymbolSize)
                                           : requested.boundedTo(QSize(kLargestSymbol, kLargestSymbol));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(symbolFile(name));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

/// One pass of a moving average over `count` values that lie `stride` apart; what lies outside counts as 0.
void boxBlur(std::vector<float> &values, std::size_t start, std::size_t stride, int count, int reach) {
    std::vector<float> line;
    line.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        line.push_back(values[start + std::size_t(i) * stride]);
    }
    const auto at = [&line, count](int i) { return i < 0 || i >= count ? 0.F : line[std::size_t(i)]; };
    float sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        sum += at(i);
    }
    for (int i = 0; i < count; ++i) {
        values[start + std::size_t(i) * stride] = sum / float(2 * reach + 1);
        sum += at(i + reach + 1) - at(i - reach);
    }
}

/// Three box blurs come within a few per cent of a Gaussian.
QImage shadowImage(int blur, int radius) {
    const int side = 2 * (blur + radius) + 1;
    QImage shape(side, side, QImage::Format_Alpha8);
    shape.fill(0);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::black);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(shape.rect()).adjusted(blur, blur, -blur, -blur), radius, radius);
    painter.end();

    const auto width = std::size_t(side);
    std::vector<float> alpha(width * width);
    for (int y = 0; y < side; ++y) {
        std::transform(shape.constScanLine(y), shape.constScanLine(y) + side, alpha.begin() + y * side,
                       [](uchar value) { return float(value); });
    }
    constexpr int kPasses = 3;
    const int reach = std::max(1, blur / kPasses);
    for (int pass = 0; pass < kPasses; ++pass) {
        for (std::size_t i = 0; i < width; ++i) {
            boxBlur(alpha, i * width, 1, side, reach);
            boxBlur(alpha, i, width, side, reach);
        }
    }
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            image.setPixelColor(x, y, QColor(0, 0, 0, int(alpha[std::size_t(y) * std::size_t(side) + std::size_t(x)])));
        }
    }
    return image;
}

} // namespace

ThemeImageProvider::ThemeImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Image) {}

void ThemeImageProvider::install(QQmlEngine &engine) {
    if (!engine.imageProvider(kProviderId)) {
        engine.addImageProvider(kProviderId, new ThemeImageProvider);
    }
}

QImage ThemeImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize) {
    const QStringList parts = id.split(u'/');
    QImage image;
    if (parts.size() == 3 && parts.at(0) == QLatin1StringView("symbol")) {
        image = symbolImage(parts.at(1), QColor::fromString(QString(u'#' + parts.at(2))), requestedSize);
    } else if (parts.size() == 4 && parts.at(0) == QLatin1StringView("shadow")) {
        // Qt takes a provider's picture to be as fine as the screen, so it is drawn that fine.
        const double pixelRatio = std::clamp(parts.at(3).toDouble(), 1.0, kLargestPixelRatio);
        image = shadowImage(int(std::lround(pixelRatio * std::clamp(parts.at(1).toInt(), 1, kLargestShadow))),
                            int(std::lround(pixelRatio * std::clamp(parts.at(2).toInt(), 0, kLargestShadow))));
    }
    *size = image.size();
    return image;
}

} // namespace tallowby
