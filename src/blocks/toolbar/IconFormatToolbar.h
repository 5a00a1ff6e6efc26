#pragma once

#include "blocks/toolbar/ColorFormatToolbar.h"

namespace tallowby {

/// Colour and size of symbols.
class IconFormatToolbar : public tallowby::ColorFormatToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// Of a side, in canvas points.
    Q_PROPERTY(QVariantList sizes READ sizes CONSTANT)
    /// The place in the list of what all symbols have; -1 for none.
    Q_PROPERTY(int side READ side NOTIFY changed)

public:
    using ColorFormatToolbar::ColorFormatToolbar;

    [[nodiscard]] static QVariantList sizes() { return {32.0, 64.0, 96.0, 128.0}; }
    [[nodiscard]] int side() const;
    /// About the middle of each. Recorded for undo.
    Q_INVOKABLE void chooseSize(int place);
};

} // namespace tallowby
