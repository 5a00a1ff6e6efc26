#include "flip/scene/HexColor.h"

namespace tallowby {

namespace {

QStringView trimmedToAlphanumerics(QStringView text) {
    while (!text.isEmpty() && !text.front().isLetterOrNumber()) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && !text.back().isLetterOrNumber()) {
        text.chop(1);
    }
    return text;
}

} // namespace

QColor colorFromHex(QStringView text) {
    const QStringView digits = trimmedToAlphanumerics(text);
    bool isHexadecimal = false;
    const uint value = digits.toUInt(&isHexadecimal, 16);
    if (isHexadecimal && digits.size() == 3) {
        return QColor::fromRgb(int(value >> 8) * 17, int(value >> 4 & 0xF) * 17, int(value & 0xF) * 17);
    }
    if (isHexadecimal && digits.size() == 6) {
        return QColor::fromRgb(value);
    }
    if (isHexadecimal && digits.size() == 8) {
        return QColor::fromRgba(value);
    }
    return QColor::fromRgb(0, 0, 0);
}

} // namespace tallowby
