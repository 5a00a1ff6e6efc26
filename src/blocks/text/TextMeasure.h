#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>
#include <QTextOption>

class QTextLayout;

namespace tallowby {

/// Lays out a plain text as the scene lays it out, its lines below each other and each `width` wide, and returns the
/// room that it takes up.
QSizeF layOutText(QTextLayout &layout, const QString &text, QTextOption option, double width);

/// How much room a plain text takes up when its lines wrap at `width`, laid out as the scene lays it out.
[[nodiscard]] QSizeF measuredText(const QString &text, const QFont &font, double width);

} // namespace tallowby
