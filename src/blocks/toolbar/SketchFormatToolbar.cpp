#include "blocks/toolbar/SketchFormatToolbar.h"

#include <algorithm>

namespace tallowby {

namespace {

/// None while they differ.
std::optional<double> widthOfStrokes(const Block &block) {
    const std::vector<SketchStroke> strokes = block.sketchStrokes();
    const auto isSame = [&](const SketchStroke &stroke) { return stroke.width == strokes.front().width; };
    return !strokes.empty() && std::ranges::all_of(strokes, isSame) ? std::optional(strokes.front().width)
                                                                    : std::nullopt;
}

} // namespace

int SketchFormatToolbar::strokeWidth() const {
    const std::optional<double> width = shared(widthOfStrokes).value_or(std::nullopt);
    return width ? int(widths().indexOf(*width)) : -1;
}

void SketchFormatToolbar::chooseWidth(int place) {
    const double width = widths().at(place).toDouble();
    for (const BlockPtr &block : blocks()) {
        viewModel().restyleStrokes(*block, std::nullopt, width);
    }
}

} // namespace tallowby
