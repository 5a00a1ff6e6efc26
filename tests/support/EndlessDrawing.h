#pragma once

#include <QByteArray>

namespace tallowby::test {

/// A well-formed drawing of 300 by 200 within all limits, which takes minutes to draw.
[[nodiscard]] inline QByteArray endlessDrawing() {
    constexpr qint64 kLines = 300'000;
    QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='300' height='200'><path stroke='#000' d='M0 0";
    for (qint64 i = 0; i < kLines; ++i) {
        drawing += 'L' + QByteArray::number((i * 7919) % 300) + ' ' + QByteArray::number((i * 104'729) % 200);
    }
    return drawing + "'/></svg>";
}

} // namespace tallowby::test
