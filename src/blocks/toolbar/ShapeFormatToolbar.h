#pragma once

#include "blocks/toolbar/SizedTextToolbar.h"

namespace tallowby {

/// Fill, stroke and its weight, and the size of the label, of shapes. The colour of the base is that of the stroke.
class ShapeFormatToolbar : public tallowby::SizedTextToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// Of `PencilColor`; white, which leaves the paper nearly as it is, and the colours of strokes.
    Q_PROPERTY(QVariantList fills READ fills NOTIFY colorsChanged)
    Q_PROPERTY(int fill READ fill NOTIFY changed)
    /// In points; a dash while they differ.
    Q_PROPERTY(QString weight READ weight NOTIFY changed)
    Q_PROPERTY(bool canThin READ canThin NOTIFY changed)
    Q_PROPERTY(bool canThicken READ canThicken NOTIFY changed)

public:
    static constexpr double kThinnest = 0.5;
    static constexpr double kThickest = 12;

    using SizedTextToolbar::SizedTextToolbar;

    [[nodiscard]] static QVariantList fills();
    [[nodiscard]] int fill() const;
    [[nodiscard]] QString weight() const;
    [[nodiscard]] bool canThin() const;
    [[nodiscard]] bool canThicken() const;

    Q_INVOKABLE void chooseFill(int place);
    /// Points, from the width that each shape has.
    Q_INVOKABLE void changeStrokeWidth(double delta);
};

} // namespace tallowby
