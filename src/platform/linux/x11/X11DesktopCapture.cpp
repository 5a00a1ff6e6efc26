#include "platform/linux/x11/X11DesktopCapture.h"

#include "platform/linux/x11/PixelReduction.h"
#include "platform/linux/x11/XcbConnection.h"

#include <xcb/shm.h>

#include <algorithm>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// About the size of a second-level cache, so that the averaging finds the pixels still there.
constexpr std::size_t kBandBytes = 512 * 1024;
constexpr std::uint32_t kAllPlanes = 0xffffffff;

int bandRows(std::size_t stride) {
    return std::max(1, int(kBandBytes / stride));
}

const xcb_format_t *formatOfDepth(const xcb_setup_t *setup, std::uint8_t depth) {
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0; xcb_format_next(&formats)) {
        if (formats.data->depth == depth) {
            return formats.data;
        }
    }
    return nullptr;
}

const xcb_visualtype_t *visualOfRoot(const xcb_screen_t &screen) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == screen.root_visual) {
                return visuals.data;
            }
        }
    }
    return nullptr;
}

/// Memory that the server writes to and this program reads. It has no name, so nothing can be left behind.
class SharedBand {
public:
    SharedBand(xcb_connection_t *connection, std::size_t size)
        : m_connection(connection)
        , m_size(size) {
        const xcb_query_extension_reply_t *extension = xcb_get_extension_data(connection, &xcb_shm_id);
        if (!extension || !extension->present) {
            return;
        }
        const auto version = xcbReply<xcb_shm_query_version_reply>(connection, xcb_shm_query_version(connection));
        if (!version || (version->major_version == 1 && version->minor_version < 2)) {
            return; // Cannot be given a file descriptor yet.
        }
        const int file = ::memfd_create("tallowby-capture", MFD_CLOEXEC);
        if (file < 0 || ::ftruncate(file, off_t(size)) != 0) {
            ::close(file);
            return;
        }
        void *memory = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
        if (memory == MAP_FAILED) {
            ::close(file);
            return;
        }
        m_memory = static_cast<const std::uint8_t *>(memory);
        m_segment = xcb_generate_id(connection);
        // The request takes the file descriptor over and closes it.
        const XcbReply<xcb_generic_error_t> error(
            xcb_request_check(connection, xcb_shm_attach_fd_checked(connection, m_segment, file, 0)));
        m_attached = error == nullptr && xcb_connection_has_error(connection) == 0;
    }
    ~SharedBand() {
        if (m_attached) {
            xcb_shm_detach(m_connection, m_segment);
        }
        if (m_memory) {
            ::munmap(const_cast<std::uint8_t *>(m_memory), m_size);
        }
    }
    SharedBand(const SharedBand &) = delete;
    SharedBand &operator=(const SharedBand &) = delete;

    [[nodiscard]] bool isAttached() const { return m_attached; }
    [[nodiscard]] xcb_shm_seg_t segment() const { return m_segment; }
    [[nodiscard]] const std::uint8_t *pixels() const { return m_memory; }

private:
    xcb_connection_t *m_connection;
    std::size_t m_size;
    const std::uint8_t *m_memory = nullptr;
    xcb_shm_seg_t m_segment = 0;
    bool m_attached = false;
};

} // namespace

QImage X11DesktopCapture::capture(const Display &display, int reduction) {
    if (!m_x11.isValid() || reduction < 1) {
        return {};
    }
    const QRect area = rootArea(display);
    const auto layout = pixelLayout();
    if (area.isEmpty() || !layout) {
        return {};
    }
    const xcb_format_t *format = formatOfDepth(xcb_get_setup(m_x11.handle()), m_x11.screen().root_depth);
    const std::size_t padBits = format->scanline_pad;
    const std::size_t rowBits = std::size_t(area.width()) * format->bits_per_pixel;
    const std::size_t stride = (rowBits + padBits - 1) / padBits * padBits / 8;

    PixelReduction shared(*layout, area.size(), reduction);
    if (readShared(area, stride, shared)) {
        return shared.image();
    }
    PixelReduction plain(*layout, area.size(), reduction);
    return readPlain(area, stride, plain) ? plain.image() : QImage();
}

QRect X11DesktopCapture::rootArea(const Display &display) const {
    // Qt scales the size of a screen, not its place.
    const QRect area(display.frame.topLeft(), (QSizeF(display.frame.size()) * display.devicePixelRatio).toSize());
    // The root window as it is now, which the screen may have been resized to since the connection was made.
    const auto root = xcbReply<xcb_get_geometry_reply>(m_x11.handle(), xcb_get_geometry(m_x11.handle(), m_x11.root()));
    return root ? area.intersected(QRect(0, 0, root->width, root->height)) : QRect();
}

std::optional<PixelLayout> X11DesktopCapture::pixelLayout() const {
    const xcb_setup_t *setup = xcb_get_setup(m_x11.handle());
    const xcb_format_t *format = formatOfDepth(setup, m_x11.screen().root_depth);
    const xcb_visualtype_t *visual = visualOfRoot(m_x11.screen());
    if (!format || !visual || visual->_class != XCB_VISUAL_CLASS_TRUE_COLOR) {
        return std::nullopt;
    }
    return PixelLayout::fromMasks(format->bits_per_pixel, setup->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST,
                                  visual->red_mask, visual->green_mask, visual->blue_mask);
}

bool X11DesktopCapture::readShared(QRect area, std::size_t stride, PixelReduction &reduction) {
    const int rows = bandRows(stride);
    const SharedBand band(m_x11.handle(), std::size_t(rows) * stride);
    for (int top = 0; band.isAttached() && top < area.height(); top += rows) {
        const int count = std::min(rows, area.height() - top);
        const auto reply = xcbReply<xcb_shm_get_image_reply>(
            m_x11.handle(),
            xcb_shm_get_image(m_x11.handle(), m_x11.root(), std::int16_t(area.x()), std::int16_t(area.y() + top),
                              std::uint16_t(area.width()), std::uint16_t(count), kAllPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
                              band.segment(), 0));
        if (!reply) {
            return false;
        }
        reduction.addRows(band.pixels(), stride, count);
    }
    return band.isAttached();
}

bool X11DesktopCapture::readPlain(QRect area, std::size_t stride, PixelReduction &reduction) {
    const int rows = bandRows(stride);
    for (int top = 0; top < area.height(); top += rows) {
        const int count = std::min(rows, area.height() - top);
        const auto reply = xcbReply<xcb_get_image_reply>(
            m_x11.handle(),
            xcb_get_image(m_x11.handle(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_x11.root(), std::int16_t(area.x()),
                          std::int16_t(area.y() + top), std::uint16_t(area.width()), std::uint16_t(count), kAllPlanes));
        if (!reply || std::size_t(xcb_get_image_data_length(reply.get())) < std::size_t(count) * stride) {
            return false;
        }
        reduction.addRows(xcb_get_image_data(reply.get()), stride, count);
    }
    return true;
}

} // namespace tallowby
