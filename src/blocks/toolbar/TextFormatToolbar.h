#pragma once

#include "blocks/toolbar/SizedTextToolbar.h"

namespace tallowby {

/// Style, size and colour of texts, also while one is being edited.
class TextFormatToolbar : public tallowby::SizedTextToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// Whether all texts are.
    Q_PROPERTY(bool isBold READ isBold NOTIFY changed)
    Q_PROPERTY(bool isItalic READ isItalic NOTIFY changed)
    Q_PROPERTY(bool isStrikethrough READ isStrikethrough NOTIFY changed)

public:
    using SizedTextToolbar::SizedTextToolbar;

    [[nodiscard]] bool isBold() const { return areAll(&Block::isBold); }
    [[nodiscard]] bool isItalic() const { return areAll(&Block::isItalic); }
    [[nodiscard]] bool isStrikethrough() const { return areAll(&Block::isStrikethrough); }

    Q_INVOKABLE void toggleBold();
    Q_INVOKABLE void toggleItalic();
    Q_INVOKABLE void toggleStrikethrough();

private:
    [[nodiscard]] bool areAll(bool (Block::*isOn)() const) const;
    void toggle(CanvasViewModel::TextStyle style, bool (Block::*isOn)() const);
};

} // namespace tallowby
