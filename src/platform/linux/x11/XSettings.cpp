#include "platform/linux/x11/XSettings.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QtEndian>

namespace tallowby {

namespace {

constexpr std::uint32_t kMaximumPropertyBytes = 256 * 1024;
enum class ValueType : std::uint8_t { integer = 0, string = 1, color = 2 };
constexpr qsizetype kColorBytes = 8;

/// Takes numbers and texts off the front of the property, in its byte order. Reading past the end fails the reader for
/// good and gives zeros.
class Reader {
public:
    explicit Reader(QByteArrayView bytes)
        : m_rest(bytes) {}

    [[nodiscard]] bool failed() const { return m_failed; }
    void setBigEndian(bool bigEndian) { m_bigEndian = bigEndian; }

    template <typename Number>
    Number number() {
        const QByteArrayView bytes = take(sizeof(Number));
        if (bytes.isEmpty()) {
            return 0;
        }
        return m_bigEndian ? qFromBigEndian<Number>(bytes.data()) : qFromLittleEndian<Number>(bytes.data());
    }
    QByteArrayView take(qsizetype count) {
        if (m_failed || count > m_rest.size()) {
            m_failed = true;
            return {};
        }
        const QByteArrayView taken = m_rest.first(count);
        m_rest = m_rest.sliced(count);
        return taken;
    }
    /// Texts are filled up to a multiple of four.
    QByteArrayView takePadded(qsizetype count) {
        const QByteArrayView taken = take(count);
        take((4 - count % 4) % 4);
        return taken;
    }

private:
    QByteArrayView m_rest;
    bool m_bigEndian = false;
    bool m_failed = false;
};

} // namespace

std::optional<std::int32_t> xsettingsInteger(QByteArrayView property, QByteArrayView name) {
    Reader reader(property);
    reader.setBigEndian(reader.number<std::uint8_t>() == XCB_IMAGE_ORDER_MSB_FIRST);
    reader.take(3);
    reader.number<std::uint32_t>(); // The serial number.
    const auto count = reader.number<std::uint32_t>();
    for (std::uint32_t index = 0; index < count && !reader.failed(); ++index) {
        const auto type = ValueType(reader.number<std::uint8_t>());
        reader.take(1);
        const QByteArrayView settingName = reader.takePadded(reader.number<std::uint16_t>());
        reader.number<std::uint32_t>(); // The serial number of its last change.
        switch (type) {
        case ValueType::integer: {
            const auto value = reader.number<std::int32_t>();
            if (settingName == name && !reader.failed()) {
                return value;
            }
            break;
        }
        case ValueType::string:
            reader.takePadded(reader.number<std::uint32_t>());
            break;
        case ValueType::color:
            reader.take(kColorBytes);
            break;
        default:
            return std::nullopt; // Its length is not known, so neither is where the next one starts.
        }
    }
    return std::nullopt;
}

std::optional<std::int32_t> xsettingsInteger(XcbConnection &x11, QByteArrayView name) {
    if (!x11.isValid()) {
        return std::nullopt;
    }
    const xcb_atom_t selection = x11.atom("_XSETTINGS_S" + QByteArray::number(x11.screenNumber()));
    const auto manager =
        xcbReply<xcb_get_selection_owner_reply>(x11.handle(), xcb_get_selection_owner(x11.handle(), selection));
    if (!manager || manager->owner == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    return xsettingsInteger(x11.bytes(manager->owner, "_XSETTINGS_SETTINGS", kMaximumPropertyBytes), name);
}

} // namespace tallowby
