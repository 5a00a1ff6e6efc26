#pragma once

#include "canvas/overlay/palette/ToolPaletteView.h"
#include "canvas/overlay/toolbar/BlockToolbar.h"

#include <QVariantList>

namespace tallowby {

/// The colour of blocks of any kinds that have one: ink first, and the other colours of the pencil.
class ColorFormatToolbar : public tallowby::BlockToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// Of `PencilColor`.
    Q_PROPERTY(QVariantList colors READ colors NOTIFY colorsChanged)
    /// The place in the list of what all blocks have; -1 for none.
    Q_PROPERTY(int color READ color NOTIFY changed)

public:
    explicit ColorFormatToolbar(QQuickItem *parent = nullptr);

    [[nodiscard]] static QVariantList colors();
    [[nodiscard]] int color() const;
    Q_INVOKABLE void chooseColor(int place);

Q_SIGNALS:
    void colorsChanged();

private:
    [[nodiscard]] int colorOf(const Block &block) const;
};

} // namespace tallowby
