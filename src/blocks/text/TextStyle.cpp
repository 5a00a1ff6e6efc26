#include "blocks/text/TextStyle.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

constexpr double kSmallestFont = 1;
constexpr double kLargestFont = 400;

} // namespace

QFont boundedFont(const QStringList &families, double pixelSize) {
    const double bounded =
        std::isfinite(pixelSize) ? std::clamp(pixelSize, kSmallestFont, kLargestFont) : kSmallestFont;
    QFont font;
    font.setFamilies(families);
    font.setPixelSize(int(std::lround(bounded)));
    return font;
}

QFont styledFont(const Block &block, const QStringList &families, double pixelSize) {
    QFont font = boundedFont(families, pixelSize);
    font.setBold(block.isBold());
    font.setItalic(block.isItalic());
    return font;
}

void followTextStyle(const Block &block, const QObject *context, const std::function<void()> &changed) {
    for (const auto signal :
         {&Block::fontSizeChanged, &Block::isBoldChanged, &Block::isItalicChanged, &Block::isStrikethroughChanged}) {
        QObject::connect(&block, signal, context, changed);
    }
}

} // namespace tallowby
