#include "canvas/drawing/PathPicture.h"

#include <QPainter>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace tallowby {

namespace {

constexpr double kBytesPerPixel = 4;

std::atomic<qint64> &bytesInUse() {
    static std::atomic<qint64> bytes = 0;
    return bytes;
}

QRectF inPixels(const PathDrawing &drawing, const PathPicture::Place &place) {
    const QRectF &bounds = drawing.bounds();
    return {bounds.topLeft() * place.scale + place.phase, bounds.size() * place.scale};
}

double pixelCount(const QRectF &rect) {
    return (rect.width() + 4) * (rect.height() + 4);
}

double longestSide(const QRectF &rect) {
    return std::max(rect.width(), rect.height()) + 4;
}

} // namespace

std::shared_ptr<const PathPicture> PathPicture::make(const PathDrawing &drawing, const Place &place) {
    return make(drawing, place, Form::smallest);
}

std::shared_ptr<const PathPicture> PathPicture::make(const PathDrawing &drawing, const Place &place, Form form) {
    const QRectF exact = inPixels(drawing, place);
    // Asked before anything is rounded: a record may claim a drawing of any size.
    const double pixels = pixelCount(exact);
    const double largest = form == Form::whole ? kLargestWhole : kLargestInked;
    if (drawing.isEmpty() || !(pixels <= largest) || longestSide(exact) > kLongestSide ||
        double(bytesInUse()) + std::min(kBytesPerPixel * pixels, double(kMostBytes)) > double(kBudget)) {
        return nullptr;
    }
    // With an empty pixel all around: the edge of a picture that is turned would be jagged, its inside is not.
    const QRect area = exact.toAlignedRect().adjusted(-1, -1, 1, 1);
    std::optional<Pixels> painted = paint(drawing, place, area, form);
    if (!painted) {
        return nullptr;
    }
    return std::shared_ptr<const PathPicture>(new PathPicture(place, area.topLeft(), std::move(*painted)));
}

std::shared_ptr<const PathPicture> PathPicture::makeBounded(const PathDrawing &drawing, Place place) {
    const QRectF exact = inPixels(drawing, place);
    const double fitting = std::min(std::sqrt(kLargestWhole / pixelCount(exact)), kLongestSide / longestSide(exact));
    if (fitting < 1) {
        // Edges have to fit, too.
        place.scale *= 0.9 * fitting;
    }
    return make(drawing, place, Form::whole);
}

std::optional<PathPicture::Pixels> PathPicture::paint(const PathDrawing &drawing, const Place &place, const QRect &area,
                                                      Form form) {
    const int rows = int(kLargestWhole) / area.width();
    const auto band = [&](int top) {
        QImage image(area.width(), std::min(rows, area.bottom() + 1 - top), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.translate(place.phase - QPoint(area.left(), top));
        painter.scale(place.scale, place.scale);
        drawing.paint(painter);
        return image;
    };
    if (area.height() <= rows) {
        const QImage image = band(area.top());
        const bool isWhole = form == Form::whole || InkedPixels::inkOf(image) > InkedPixels::kMostInk;
        return isWhole ? Pixels(image) : Pixels(InkedPixels(image));
    }
    InkedPixels ink(area.width());
    const double pixels = double(area.width()) * area.height();
    const double mostBytes = std::min(double(kMostBytes), kMostLargeInk * kBytesPerPixel * pixels);
    for (int top = area.top(); top <= area.bottom(); top += rows) {
        ink.append(band(top));
        if (double(ink.sizeInBytes()) > mostBytes) {
            return std::nullopt;
        }
    }
    return ink;
}

PathPicture::PathPicture(const Place &place, QPoint topLeft, Pixels pixels)
    : m_place(place)
    , m_topLeft(topLeft)
    , m_pixels(std::move(pixels)) {
    bytesInUse() += sizeInBytes();
}

PathPicture::~PathPicture() {
    bytesInUse() -= sizeInBytes();
}

QImage PathPicture::image() const {
    return ink() ? ink()->image() : std::get<QImage>(m_pixels);
}

QSize PathPicture::size() const {
    return std::visit([](const auto &pixels) { return pixels.size(); }, m_pixels);
}

qint64 PathPicture::sizeInBytes() const {
    return std::visit([](const auto &pixels) { return qint64(pixels.sizeInBytes()); }, m_pixels);
}

QRectF PathPicture::area() const {
    return {(m_topLeft - m_place.phase) / m_place.scale, QSizeF(size()) / m_place.scale};
}

} // namespace tallowby
