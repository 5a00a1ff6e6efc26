#include "platform/decoding/DrawingReading.h"

#include <fontconfig/fontconfig.h>
// GLib has a member named as Qt's macro.
#undef signals
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

constexpr double kDotsPerInch = 96;

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(cairo_t *painter) const { cairo_destroy(painter); }
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

DecodedPicture refused(PictureRefusal why) {
    return {.image = {}, .size = {}, .refusal = why};
}

Owned<RsvgHandle> load(const QByteArray &file) {
    const Owned<GInputStream> stream(g_memory_input_stream_new_from_data(file.constData(), file.size(), nullptr));
    Owned<RsvgHandle> drawing(
        rsvg_handle_new_from_stream_sync(stream.get(), nullptr, RSVG_HANDLE_FLAGS_NONE, nullptr, nullptr));
    if (drawing) {
        rsvg_handle_set_dpi(drawing.get(), kDotsPerInch);
    }
    return drawing;
}

/// The size that the drawing says it has, or else that of its view box, or else that of what is drawn.
QSizeF ownSize(RsvgHandle *drawing) {
    double width = 0;
    double height = 0;
    if (rsvg_handle_get_intrinsic_size_in_pixels(drawing, &width, &height)) {
        return {width, height};
    }
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasViewBox = FALSE;
    RsvgLength ignored{};
    RsvgRectangle viewBox{};
    rsvg_handle_get_intrinsic_dimensions(drawing, &hasWidth, &ignored, &hasHeight, &ignored, &hasViewBox, &viewBox);
    if (hasViewBox) {
        return {viewBox.width, viewBox.height};
    }
    RsvgRectangle ink{};
    RsvgRectangle logical{};
    return rsvg_handle_get_geometry_for_element(drawing, nullptr, &ink, &logical, nullptr)
               ? QSizeF(ink.x + ink.width, ink.y + ink.height)
               : QSizeF();
}

bool isShowable(double side) {
    return std::isfinite(side) && side >= 1 && side <= kMaxDrawingSide;
}

} // namespace

bool looksLikeDrawing(const QByteArray &file) {
    const QByteArray start = file.first(std::min<qsizetype>(file.size(), 2048)).trimmed();
    return start.startsWith("<svg") ||
           ((start.startsWith("<?xml") || start.startsWith("<!") || start.startsWith("\xef\xbb\xbf<")) &&
            start.contains("<svg"));
}

DecodedPicture readDrawing(const QByteArray &file, int longestSide) {
    if (file.size() > kMaxDrawingFile) {
        return refused(PictureRefusal::drawingTooLarge);
    }
    const Owned<RsvgHandle> drawing = load(file);
    if (!drawing) {
        return refused(PictureRefusal::damaged);
    }
    const QSizeF own = ownSize(drawing.get());
    if (!isShowable(own.width()) || !isShowable(own.height())) {
        return refused(PictureRefusal::noSize);
    }
    const QSize drawn = own.scaled(longestSide, longestSide, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    QImage image(drawn, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return refused(PictureRefusal::tooMuchMemory);
    }
    image.fill(Qt::transparent);
    const Owned<cairo_surface_t> surface(cairo_image_surface_create_for_data(
        image.bits(), CAIRO_FORMAT_ARGB32, drawn.width(), drawn.height(), int(image.bytesPerLine())));
    const Owned<cairo_t> painter(cairo_create(surface.get()));
    cairo_scale(painter.get(), drawn.width() / own.width(), drawn.height() / own.height());
    const RsvgRectangle place{0, 0, own.width(), own.height()};
    if (!rsvg_handle_render_document(drawing.get(), painter.get(), &place, nullptr)) {
        return refused(PictureRefusal::damaged);
    }
    cairo_surface_flush(surface.get());
    return {.image = std::move(image), .size = own.toSize(), .refusal = PictureRefusal::none, .isScalable = true};
}

void loadDrawingReader() {
    FcInit();
    // Words, for the fonts, and pixels, for the readers of those.
    static_cast<void>(readDrawing(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:x='http://www.w3.org/1999/xlink' width='8' height='8'>"
        "<text y='8'>a</text><image width='1' height='1' x:href='data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAAB"
        "CAAAAAA6fptVAAAACklEQVR4nGNgAAAAAgABSK+kcQAAAABJRU5ErkJggg=='/></svg>",
        8));
}

QStringList fontFolders() {
    QStringList folders;
    if (FcStrList *const list = FcConfigGetFontDirs(nullptr)) {
        while (const FcChar8 *folder = FcStrListNext(list)) {
            folders << QString::fromUtf8(reinterpret_cast<const char *>(folder));
        }
        FcStrListDone(list);
    }
    return folders;
}

} // namespace tallowby
