#pragma once

#include "platform/desktop/DesktopCapture.h"

#include <QRect>

#include <cstdint>
#include <optional>

namespace tallowby {

class PixelReduction;
class XcbConnection;
struct PixelLayout;

/// Pictures of the root window with all that stands on it, read in bands that stay in the processor's cache: through
/// shared memory, or over the connection where the server is on another machine.
class X11DesktopCapture final : public DesktopCapture {
public:
    explicit X11DesktopCapture(XcbConnection &x11)
        : m_x11(x11) {}

    [[nodiscard]] QImage capture(const Display &display, int reduction) override;

private:
    [[nodiscard]] QRect rootArea(const Display &display) const;
    [[nodiscard]] std::optional<PixelLayout> pixelLayout() const;
    [[nodiscard]] bool readShared(QRect area, std::size_t stride, PixelReduction &reduction);
    [[nodiscard]] bool readPlain(QRect area, std::size_t stride, PixelReduction &reduction);

    XcbConnection &m_x11;
};

} // namespace tallowby
