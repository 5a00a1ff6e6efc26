#pragma once

#include "canvas/overlay/toolbar/BlockToolbar.h"

#include <QVariantList>

namespace tallowby {

/// The thickness of dividers.
class DividerFormatToolbar : public tallowby::BlockToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// In canvas points.
    Q_PROPERTY(QVariantList thicknesses READ thicknesses CONSTANT)
    /// The place in the list of what all dividers have; -1 for none.
    Q_PROPERTY(int thickness READ thickness NOTIFY changed)

public:
    using BlockToolbar::BlockToolbar;

    [[nodiscard]] static QVariantList thicknesses() { return {1.0, 2.0, 4.0, 8.0}; }
    [[nodiscard]] int thickness() const;
    Q_INVOKABLE void chooseThickness(int place);
};

} // namespace tallowby
