#include "canvas/model/BlockGeometry.h"
#include "canvas/model/CanvasViewModel.h"
#include "model/AnyCodable.h"
#include "storage/DebouncedSaver.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

// A run of clicks on the same control is one write of the file.

void CanvasViewModel::setTextStyle(Block &block, TextStyle style, bool isOn) {
    switch (style) {
    case TextStyle::bold:
        format(block, &Block::isBold, &Block::setIsBold, isOn);
        break;
    case TextStyle::italic:
        format(block, &Block::isItalic, &Block::setIsItalic, isOn);
        break;
    case TextStyle::strikethrough:
        format(block, &Block::isStrikethrough, &Block::setIsStrikethrough, isOn);
        break;
    }
}

void CanvasViewModel::setFontSize(Block &block, double points) {
    format(block, &Block::fontSize, &Block::setFontSize, points);
}

void CanvasViewModel::setTextColor(Block &block, const QString &color) {
    format(block, &Block::textColor, &Block::setTextColor, color);
}

void CanvasViewModel::setNotePaper(Block &block, const QString &name) {
    format(block, &Block::stickyColor, &Block::setStickyColor, name);
    // The field does not outlive the program.
    setContentField(block, QStringLiteral("stickyColor"), name);
}

void CanvasViewModel::restyleStrokes(Block &block, const std::optional<QString> &color, std::optional<double> width) {
    std::vector<SketchStroke> strokes = block.sketchStrokes();
    bool isChanged = false;
    for (SketchStroke &stroke : strokes) {
        isChanged |= color && std::exchange(stroke.color, *color) != *color;
        isChanged |= width && std::exchange(stroke.width, *width) != *width;
    }
    if (isChanged) {
        block.setSketchStrokes(strokes);
        noteFormatted(block);
    }
}

void CanvasViewModel::resizeAboutMiddle(const BlockPtr &block, QSizeF size) {
    const QRectF from = frameOf(*block);
    QRectF to({}, size);
    to.moveCenter(from.center());
    commitTransform(block, from, to);
}

void CanvasViewModel::noteFormatted(Block &block) {
    markEdited(block);
    m_saver.requestSave();
}

template <typename Get, typename Set, typename Value>
void CanvasViewModel::format(Block &block, Get get, Set set, const Value &value) {
    if ((block.*get)() != value) {
        (block.*set)(value);
        noteFormatted(block);
    }
}

} // namespace tallowby
