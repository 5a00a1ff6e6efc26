#include "blocks/divider/DividerBlockContent.h"

#include "canvas/drawing/PathDrawingItem.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

const QString kThicknessKey = QStringLiteral("thickness");
/// A record from elsewhere may claim any number.
constexpr double kThinnest = 0.5;
constexpr double kThickest = 64;

/// Half ink, half canvas.
QColor ruleColor() {
    const QColor ink = Theme::shared().inkSoft();
    const QColor canvas = Theme::shared().canvas();
    return QColor((ink.red() + canvas.red()) / 2, (ink.green() + canvas.green()) / 2, (ink.blue() + canvas.blue()) / 2);
}

} // namespace

DividerBlockContent::DividerBlockContent(QQuickItem *parent)
    : BlockBody(parent)
    , m_rule(new PathDrawingItem(PathDrawingItem::Keeping::picture, this)) {}

double DividerBlockContent::thicknessOf(const Block &block) {
    const auto kept = block.contentField(kThicknessKey);
    if (!kept) {
        return kThickness;
    }
    const auto *whole = std::get_if<std::int64_t>(&kept->value());
    const auto *fraction = std::get_if<double>(&kept->value());
    return whole || fraction ? std::clamp(whole ? double(*whole) : *fraction, kThinnest, kThickest) : kThickness;
}

void DividerBlockContent::setThickness(CanvasViewModel &model, Block &block, double thickness) {
    model.setContentField(block, kThicknessKey, thickness);
}

void DividerBlockContent::componentComplete() {
    BlockBody::componentComplete();
    // After the container has followed.
    connect(block(), &Block::yPositionChanged, this, &QQuickItem::polish);
    connect(block(), &Block::contentChanged, this, &QQuickItem::polish);
    connect(&Theme::shared(), &Theme::changed, this, &QQuickItem::polish);
    polish();
}

void DividerBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    polish();
}

void DividerBlockContent::setZoom(double zoom) {
    BlockBody::setZoom(zoom);
    m_rule->setZoom(zoom);
    polish();
}

void DividerBlockContent::settleZoom() {
    BlockBody::settleZoom();
    m_rule->settleZoom();
}

void DividerBlockContent::itemChange(ItemChange change, const ItemChangeData &data) {
    BlockBody::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window)) {
        polish();
    }
}

/// Between two pixels the rule would be paler in one place than in another. The canvas origin lies on a whole pixel, so
/// that a pan changes nothing.
void DividerBlockContent::updatePolish() {
    const double pixelsPerPoint = zoom() * (window() ? window()->effectiveDevicePixelRatio() : 1.0);
    const double thickness = std::max(1.0, std::round(thicknessOf(*block()) * pixelsPerPoint)) / pixelsPerPoint;
    const double top = parentItem() ? parentItem()->y() : 0.0;
    const double pixel = (top + (height() - thickness) / 2) * pixelsPerPoint;
    QPainterPath rule;
    rule.addRect(0, std::round(pixel) / pixelsPerPoint - top, width(), thickness);
    m_rule->setDrawing(PathDrawing({{.path = rule, .fill = ruleColor(), .pen = Qt::NoPen}}));
}

} // namespace tallowby
