#pragma once

#include "blocks/toolbar/ColorFormatToolbar.h"

namespace tallowby {

/// The size of texts, beside a colour.
class SizedTextToolbar : public tallowby::ColorFormatToolbar {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A base of toolbars")
    /// In points; a dash while they differ.
    Q_PROPERTY(QString fontSize READ fontSize NOTIFY changed)
    Q_PROPERTY(bool canShrink READ canShrink NOTIFY changed)
    Q_PROPERTY(bool canGrow READ canGrow NOTIFY changed)

public:
    static constexpr double kSmallestSize = 8;
    static constexpr double kLargestSize = 96;

    using ColorFormatToolbar::ColorFormatToolbar;

    [[nodiscard]] QString fontSize() const;
    [[nodiscard]] bool canShrink() const;
    [[nodiscard]] bool canGrow() const;
    /// Each text to the next size of the usual ones, from its own.
    Q_INVOKABLE void shrink();
    Q_INVOKABLE void grow();

    [[nodiscard]] static double smallerThan(double size);
    [[nodiscard]] static double largerThan(double size);
};

} // namespace tallowby
