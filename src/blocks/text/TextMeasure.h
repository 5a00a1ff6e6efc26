#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

namespace tallowby {

/// How much room a plain text takes up when its lines wrap at `width`, laid out as the scene lays it out.
[[nodiscard]] QSizeF measuredText(const QString &text, const QFont &font, double width);

} // namespace tallowby
