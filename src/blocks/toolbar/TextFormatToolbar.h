#pragma once

#include "blocks/toolbar/ColorFormatToolbar.h"

namespace tallowby {

/// Style, size and colour of texts, also while one is being edited.
class TextFormatToolbar : public tallowby::ColorFormatToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// Whether all texts are.
    Q_PROPERTY(bool isBold READ isBold NOTIFY changed)
    Q_PROPERTY(bool isItalic READ isItalic NOTIFY changed)
    Q_PROPERTY(bool isStrikethrough READ isStrikethrough NOTIFY changed)
    /// In points; a dash while they differ.
    Q_PROPERTY(QString fontSize READ fontSize NOTIFY changed)
    Q_PROPERTY(bool canShrink READ canShrink NOTIFY changed)
    Q_PROPERTY(bool canGrow READ canGrow NOTIFY changed)

public:
    static constexpr double kSmallestSize = 8;
    static constexpr double kLargestSize = 96;

    using ColorFormatToolbar::ColorFormatToolbar;

    [[nodiscard]] bool isBold() const { return areAll(&Block::isBold); }
    [[nodiscard]] bool isItalic() const { return areAll(&Block::isItalic); }
    [[nodiscard]] bool isStrikethrough() const { return areAll(&Block::isStrikethrough); }
    [[nodiscard]] QString fontSize() const;
    [[nodiscard]] bool canShrink() const;
    [[nodiscard]] bool canGrow() const;

    Q_INVOKABLE void toggleBold();
    Q_INVOKABLE void toggleItalic();
    Q_INVOKABLE void toggleStrikethrough();
    /// Each text to the next size of the usual ones, from its own.
    Q_INVOKABLE void shrink();
    Q_INVOKABLE void grow();

    [[nodiscard]] static double smallerThan(double size);
    [[nodiscard]] static double largerThan(double size);

private:
    [[nodiscard]] bool areAll(bool (Block::*isOn)() const) const;
    void toggle(CanvasViewModel::TextStyle style, bool (Block::*isOn)() const);
};

} // namespace tallowby
