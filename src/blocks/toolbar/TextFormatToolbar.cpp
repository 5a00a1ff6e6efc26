#include "blocks/toolbar/TextFormatToolbar.h"

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

/// Close together where reading sizes are, wide apart where a point is not seen.
constexpr std::array kSizes{
    TextFormatToolbar::kSmallestSize, 10.0, 12.0, 14.0, 16.0, 18.0, 20.0, 24.0, 28.0, 32.0, 40.0, 48.0, 64.0, 80.0,
    TextFormatToolbar::kLargestSize};

} // namespace

double TextFormatToolbar::smallerThan(double size) {
    const auto at = std::ranges::lower_bound(kSizes, size);
    return at == kSizes.begin() ? kSizes.front() : *(at - 1);
}

double TextFormatToolbar::largerThan(double size) {
    const auto at = std::ranges::upper_bound(kSizes, size);
    return at == kSizes.end() ? kSizes.back() : *at;
}

bool TextFormatToolbar::areAll(bool (Block::*isOn)() const) const {
    return std::ranges::all_of(blocks(), [isOn](const BlockPtr &block) { return ((*block).*isOn)(); });
}

QString TextFormatToolbar::fontSize() const {
    const auto size = shared([](const Block &block) { return block.fontSize(); });
    return size ? QString::number(*size, 'g', 3) : QStringLiteral("–");
}

bool TextFormatToolbar::canShrink() const {
    return std::ranges::any_of(blocks(), [](const BlockPtr &block) { return block->fontSize() > kSmallestSize; });
}

bool TextFormatToolbar::canGrow() const {
    return std::ranges::any_of(blocks(), [](const BlockPtr &block) { return block->fontSize() < kLargestSize; });
}

void TextFormatToolbar::shrink() {
    for (const BlockPtr &block : blocks()) {
        viewModel().setFontSize(*block, smallerThan(block->fontSize()));
    }
}

void TextFormatToolbar::grow() {
    for (const BlockPtr &block : blocks()) {
        viewModel().setFontSize(*block, largerThan(block->fontSize()));
    }
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
