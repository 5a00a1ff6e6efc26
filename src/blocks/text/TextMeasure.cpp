#include "blocks/text/TextMeasure.h"

#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace tallowby {

QSizeF layOutText(QTextLayout &layout, const QString &text, QTextOption option, double width) {
    // Letters of the scene stand at places that do not depend on the screen.
    option.setUseDesignMetrics(true);
    QString lines = text;
    lines.replace(u'\n', QChar::LineSeparator);
    layout.setText(lines);
    layout.setTextOption(option);
    QSizeF used;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1.0, width));
        line.setPosition({0, used.height()});
        used = {std::max(used.width(), line.naturalTextWidth()), used.height() + std::ceil(line.height())};
    }
    layout.endLayout();
    return used;
}

QSizeF measuredText(const QString &text, const QFont &font, double width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout({}, font);
    return layOutText(layout, text, option, width);
}

} // namespace tallowby
