#pragma once

#include "canvas/drawing/InkedPixels.h"
#include "canvas/drawing/PathDrawing.h"

#include <QImage>

#include <memory>
#include <optional>
#include <variant>

namespace tallowby {

/// A drawing as pixels, for one scale and one place between the pixels of the screen. All pictures together take no
/// more than a fixed amount of memory. May be made on any thread.
class PathPicture {
public:
    /// Where the picture goes: device pixels per point, and how far the drawing's origin lies from a whole device
    /// pixel. A picture that is shown there shows each of its pixels on exactly one of the screen.
    struct Place {
        double scale = 1;
        QPointF phase;

        friend bool operator==(const Place &, const Place &) = default;
    };

    /// In pixels; beyond, a drawing is kept only as the pixels of its lines.
    static constexpr double kLargestWhole = 4'000'000;
    /// In pixels: a sketch as large as a screen of 4K, three times magnified. Beyond, a drawing is not kept.
    static constexpr double kLargestInked = 80'000'000;
    /// In pixels; the painter loses count beyond, and textures are no longer than that.
    static constexpr double kLongestSide = 16'000;
    /// Of the pixels of one that is larger than that: filled areas are quicker painted than read.
    static constexpr double kMostLargeInk = 0.5;
    /// In bytes, of one picture: what the sketch of a full screen takes, three times magnified.
    static constexpr qint64 kMostBytes = 40'000'000;
    /// In bytes, of all pictures.
    static constexpr qint64 kBudget = 96 * 1024 * 1024;

    /// Null where the drawing is empty or too large, or no memory is left for it. A drawing of thin lines is kept as
    /// their pixels alone.
    [[nodiscard]] static std::shared_ptr<const PathPicture> make(const PathDrawing &drawing, const Place &place);
    /// For a texture: always whole, and a drawing that is too large comes out coarser instead.
    [[nodiscard]] static std::shared_ptr<const PathPicture> makeBounded(const PathDrawing &drawing, Place place);
    ~PathPicture();
    PathPicture(const PathPicture &) = delete;
    PathPicture &operator=(const PathPicture &) = delete;

    [[nodiscard]] QImage image() const;
    /// Null where the picture is kept whole.
    [[nodiscard]] const InkedPixels *ink() const { return std::get_if<InkedPixels>(&m_pixels); }
    /// In pixels.
    [[nodiscard]] QSize size() const;
    [[nodiscard]] const Place &place() const { return m_place; }
    /// What the picture covers, in the drawing's points.
    [[nodiscard]] QRectF area() const;

private:
    using Pixels = std::variant<QImage, InkedPixels>;

    enum class Form {
        whole,
        smallest,
    };

    [[nodiscard]] static std::shared_ptr<const PathPicture> make(const PathDrawing &drawing, const Place &place,
                                                                 Form form);
    /// Empty where that takes too much memory. A large one is painted in bands, of which only one is in memory.
    [[nodiscard]] static std::optional<Pixels> paint(const PathDrawing &drawing, const Place &place, const QRect &area,
                                                     Form form);
    PathPicture(const Place &place, QPoint topLeft, Pixels pixels);
    [[nodiscard]] qint64 sizeInBytes() const;

    Place m_place;
    QPoint m_topLeft;
    Pixels m_pixels;
};

} // namespace tallowby
