#include "blocks/toolbar/KindColors.h"

#include "canvas/model/CanvasViewModel.h"
#include "model/AnyCodable.h"

#include <algorithm>

namespace tallowby::kindColors {

namespace {

const QString kDrawingInk = QStringLiteral("#333333");

QString textColorOf(const Block &block) {
    return block.textColor();
}

void setTextColor(CanvasViewModel &model, Block &block, const QString &color) {
    model.setTextColor(block, color);
}

QString strokeColorOf(const Block &block) {
    return block.strokeColor();
}

void setStrokeColor(CanvasViewModel &model, Block &block, const QString &color) {
    model.setContentField(block, QStringLiteral("strokeColor"), color);
}

QString colorOfStrokes(const Block &block) {
    const std::vector<SketchStroke> strokes = block.sketchStrokes();
    const auto isSame = [&](const SketchStroke &stroke) { return stroke.color == strokes.front().color; };
    return !strokes.empty() && std::ranges::all_of(strokes, isSame) ? strokes.front().color : QString();
}

void setColorOfStrokes(CanvasViewModel &model, Block &block, const QString &color) {
    model.restyleStrokes(block, color, std::nullopt);
}

} // namespace

const BlockColor &text() {
    static const BlockColor color{QStringLiteral("#000000"), textColorOf, setTextColor};
    return color;
}

const BlockColor &icon() {
    static const BlockColor color{kDrawingInk, textColorOf, setTextColor};
    return color;
}

const BlockColor &stroke() {
    static const BlockColor color{kDrawingInk, strokeColorOf, setStrokeColor};
    return color;
}

const BlockColor &strokes() {
    static const BlockColor color{kDrawingInk, colorOfStrokes, setColorOfStrokes};
    return color;
}

} // namespace tallowby::kindColors
