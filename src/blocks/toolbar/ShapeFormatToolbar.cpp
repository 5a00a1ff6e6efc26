#include "blocks/toolbar/ShapeFormatToolbar.h"

#include "model/AnyCodable.h"

#include <algorithm>

namespace tallowby {

QVariantList ShapeFormatToolbar::fills() {
    // A shape is filled with the colour that is kept, in either theme.
    QVariantList fills{QVariant::fromValue(PencilColor{QStringLiteral("#FFFFFF"), Qt::white, tr("White")})};
    for (const QVariant &color : colors()) {
        PencilColor fill = color.value<PencilColor>();
        fill.shown = QColor::fromString(fill.value);
        fills << QVariant::fromValue(fill);
    }
    return fills;
}

int ShapeFormatToolbar::fill() const {
    const auto value = shared([](const Block &block) { return block.fillColor().toUpper(); });
    const QVariantList fills = this->fills();
    const auto isValue = [&](const QVariant &fill) { return fill.value<PencilColor>().value == value; };
    const auto found = std::ranges::find_if(fills, isValue);
    return found == fills.end() ? -1 : int(found - fills.begin());
}

void ShapeFormatToolbar::chooseFill(int place) {
    const QString value = fills().at(place).value<PencilColor>().value;
    for (const BlockPtr &block : blocks()) {
        viewModel().setContentField(*block, QStringLiteral("fillColor"), value);
    }
}

QString ShapeFormatToolbar::weight() const {
    const auto width = shared([](const Block &block) { return block.strokeWidth(); });
    return width ? QString::number(*width, 'f', 1) : QStringLiteral("–");
}

bool ShapeFormatToolbar::canThin() const {
    return std::ranges::any_of(blocks(), [](const BlockPtr &block) { return block->strokeWidth() > kThinnest; });
}

bool ShapeFormatToolbar::canThicken() const {
    return std::ranges::any_of(blocks(), [](const BlockPtr &block) { return block->strokeWidth() < kThickest; });
}

void ShapeFormatToolbar::changeStrokeWidth(double delta) {
    for (const BlockPtr &block : blocks()) {
        const double width = std::max(std::min(block->strokeWidth() + delta, kThickest), kThinnest);
        viewModel().setContentField(*block, QStringLiteral("strokeWidth"), width);
    }
}

} // namespace tallowby
