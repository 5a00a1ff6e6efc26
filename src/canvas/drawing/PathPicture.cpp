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

} // namespace

std::shared_ptr<const PathPicture> PathPicture::make(const PathDrawing &drawing, const Place &place) {
    return make(drawing, place, Form::smallest);
}

std::shared_ptr<const PathPicture> PathPicture::make(const PathDrawing &drawing, const Place &place, Form form) {
    const QRectF exact = inPixels(drawing, place);
    // Asked before anything is rounded: a record may claim a drawing of any size.
    const double pixels = pixelCount(exact);
    if (drawing.isEmpty() || !(pixels <= kLargestPicture) ||
        double(bytesInUse()) + kBytesPerPixel * pixels > double(kBudget)) {
        return nullptr;
    }
    // With an empty pixel all around: the edge of a picture that is turned would be jagged, its inside is not.
    return std::shared_ptr<const PathPicture>(
        new PathPicture(drawing, place, exact.toAlignedRect().adjusted(-1, -1, 1, 1), form));
}

std::shared_ptr<const PathPicture> PathPicture::makeBounded(const PathDrawing &drawing, Place place) {
    const double pixels = pixelCount(inPixels(drawing, place));
    if (pixels > kLargestPicture) {
        // Edges have to fit, too, so that the longest one decides.
        place.scale *= 0.9 * std::sqrt(kLargestPicture / pixels);
    }
    return make(drawing, place, Form::whole);
}

PathPicture::PathPicture(const PathDrawing &drawing, const Place &place, const QRect &pixels, Form form)
    : m_place(place)
    , m_topLeft(pixels.topLeft()) {
    QImage image(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(place.phase - m_topLeft);
    painter.scale(place.scale, place.scale);
    drawing.paint(painter);
    painter.end();
    if (form == Form::smallest && InkedPixels::inkOf(image) <= InkedPixels::kMostInk) {
        m_pixels = InkedPixels(image);
    } else {
        m_pixels = image;
    }
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
