#include "blocks/toolbar/ColorFormatToolbar.h"

#include "canvas/drawing/SketchRenderer.h"

namespace tallowby {

ColorFormatToolbar::ColorFormatToolbar(QQuickItem *parent)
    : BlockToolbar(parent) {
    connect(&Theme::shared(), &Theme::changed, this, &ColorFormatToolbar::colorsChanged);
    connect(&Theme::shared(), &Theme::changed, this, &QQuickItem::polish);
}

QVariantList ColorFormatToolbar::colors() {
    return ToolPaletteView::pencilColors();
}

int ColorFormatToolbar::color() const {
    return shared([this](const Block &block) { return colorOf(block); }).value_or(-1);
}

/// By what is seen: black, white and the grey of the pencil are all ink.
int ColorFormatToolbar::colorOf(const Block &block) const {
    const BlockColor &kind = *kindOf(block).color;
    const QString chosen = kind.get(block);
    if (chosen.isEmpty()) {
        return -1;
    }
    const QColor shown = SketchRenderer::shownColor(chosen);
    if (shown == Theme::shared().ink() || shown == SketchRenderer::shownColor(kind.ink)) {
        return 0;
    }
    const QVariantList colors = this->colors();
    for (int place = 0; place < colors.size(); ++place) {
        if (colors.at(place).value<PencilColor>().shown == shown) {
            return place;
        }
    }
    return -1;
}

void ColorFormatToolbar::chooseColor(int place) {
    const QString value = colors().at(place).value<PencilColor>().value;
    for (const BlockPtr &block : blocks()) {
        const BlockColor &kind = *kindOf(*block).color;
        kind.set(viewModel(), *block, place == 0 ? kind.ink : value);
    }
}

} // namespace tallowby
