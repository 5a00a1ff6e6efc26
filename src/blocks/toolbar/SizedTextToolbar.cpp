#include "blocks/toolbar/SizedTextToolbar.h"

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

/// Close together where reading sizes are, wide apart where a point is not seen.
constexpr std::array kSizes{
    SizedTextToolbar::kSmallestSize, 10.0, 12.0, 14.0, 16.0, 18.0, 20.0, 24.0, 28.0, 32.0, 40.0, 48.0, 64.0, 80.0,
    SizedTextToolbar::kLargestSize};

} // namespace

double SizedTextToolbar::smallerThan(double size) {
    const auto at = std::ranges::lower_bound(kSizes, size);
    return at == kSizes.begin() ? kSizes.front() : *(at - 1);
}

double SizedTextToolbar::largerThan(double size) {
    const auto at = std::ranges::upper_bound(kSizes, size);
    return at == kSizes.end() ? kSizes.back() : *at;
}

QString SizedTextToolbar::fontSize() const {
    const auto size = shared([](const Block &block) { return block.fontSize(); });
    return size ? QString::number(*size, 'g', 3) : QStringLiteral("–");
}

bool SizedTextToolbar::canShrink() const {
    return std::ranges::any_of(blocks(), [](const BlockPtr &block) { return block->fontSize() > kSmallestSize; });
}

bool SizedTextToolbar::canGrow() const {
    return std::ranges::any_of(blocks(), [](const BlockPtr &block) { return block->fontSize() < kLargestSize; });
}

void SizedTextToolbar::shrink() {
    for (const BlockPtr &block : blocks()) {
        viewModel().setFontSize(*block, smallerThan(block->fontSize()));
    }
}

void SizedTextToolbar::grow() {
    for (const BlockPtr &block : blocks()) {
        viewModel().setFontSize(*block, largerThan(block->fontSize()));
    }
}

} // namespace tallowby
