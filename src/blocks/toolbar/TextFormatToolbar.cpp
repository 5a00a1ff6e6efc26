#include "blocks/toolbar/TextFormatToolbar.h"

#include <algorithm>

namespace tallowby {

bool TextFormatToolbar::areAll(bool (Block::*isOn)() const) const {
    return std::ranges::all_of(blocks(), [isOn](const BlockPtr &block) { return ((*block).*isOn)(); });
}

void TextFormatToolbar::toggleBold() {
    toggle(CanvasViewModel::TextStyle::bold, &Block::isBold);
}

void TextFormatToolbar::toggleItalic() {
    toggle(CanvasViewModel::TextStyle::italic, &Block::isItalic);
}

void TextFormatToolbar::toggleStrikethrough() {
    toggle(CanvasViewModel::TextStyle::strikethrough, &Block::isStrikethrough);
}

/// On for all of them, unless it is on for all already.
void TextFormatToolbar::toggle(CanvasViewModel::TextStyle style, bool (Block::*isOn)() const) {
    const bool wasOn = areAll(isOn);
    for (const BlockPtr &block : blocks()) {
        viewModel().setTextStyle(*block, style, !wasOn);
    }
}

} // namespace tallowby
