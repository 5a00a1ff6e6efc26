#pragma once

#include "blocks/toolbar/ColorFormatToolbar.h"

namespace tallowby {

/// Colour and width of the strokes that sketches have already.
class SketchFormatToolbar : public tallowby::ColorFormatToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// In canvas points.
    Q_PROPERTY(QVariantList widths READ widths CONSTANT)
    /// The place in the list of what all strokes have; -1 for none.
    Q_PROPERTY(int strokeWidth READ strokeWidth NOTIFY changed)

public:
    using ColorFormatToolbar::ColorFormatToolbar;

    [[nodiscard]] static QVariantList widths() { return ToolPaletteView::pencilWidths(); }
    [[nodiscard]] int strokeWidth() const;
    Q_INVOKABLE void chooseWidth(int place);
};

} // namespace tallowby
