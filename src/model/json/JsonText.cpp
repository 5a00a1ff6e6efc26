#include "model/json/JsonText.h"

#include <charconv>
#include <cmath>

namespace tallowby {

namespace {

/// From here on a double need not fit a signed 64-bit integer.
constexpr double kIntegerLimit = 9'223'372'036'854'775'808.0;
constexpr std::size_t kUuidLength = 36;
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool isHyphenPlace(std::size_t place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const char lower = char(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

template <typename Number>
std::size_t writeNumber(std::array<char, 32> &text, Number number) {
    if (!std::isfinite(number)) {
        return 0;
    }
    char *const end = text.data() + text.size();
    const bool isWhole = std::abs(double(number)) < kIntegerLimit && std::trunc(number) == number;
    const auto written =
        isWhole ? std::to_chars(text.data(), end, std::int64_t(number)) : std::to_chars(text.data(), end, number);
    return std::size_t(written.ptr - text.data());
}

} // namespace

JsonNumberText::JsonNumberText(double number)
    : m_length(writeNumber(m_text, number)) {}

JsonNumberText::JsonNumberText(float number)
    : m_length(writeNumber(m_text, number)) {}

std::array<char, 36> uuidText(QUuid uuid) {
    const auto bytes = uuid.toRfc4122();
    std::array<char, kUuidLength> text;
    qsizetype next = 0;
    for (std::size_t place = 0; place < kUuidLength;) {
        if (isHyphenPlace(place)) {
            text[place++] = '-';
            continue;
        }
        const auto byte = static_cast<unsigned char>(bytes[next++]);
        text[place++] = kHexDigits[byte >> 4];
        text[place++] = kHexDigits[byte & 0xF];
    }
    return text;
}

std::optional<QUuid> uuidFromText(std::string_view text) {
    if (text.size() != kUuidLength) {
        return std::nullopt;
    }
    std::array<char, 16> bytes;
    std::size_t next = 0;
    for (std::size_t place = 0; place < kUuidLength;) {
        if (isHyphenPlace(place)) {
            if (text[place++] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const int high = hexValue(text[place++]);
        const int low = hexValue(text[place++]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        bytes[next++] = char(high << 4 | low);
    }
    return QUuid::fromRfc4122(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
}

} // namespace tallowby
