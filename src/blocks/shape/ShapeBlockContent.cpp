#include "blocks/shape/ShapeBlockContent.h"

#include "blocks/shape/ShapeOutlines.h"
#include "blocks/text/TextStyle.h"
#include "canvas/drawing/PathDrawingItem.h"
#include "canvas/drawing/SketchRenderer.h"
#include "platform/theme/Theme.h"

#include <algorithm>

namespace tallowby {

namespace {

/// A record from elsewhere may claim any number.
constexpr double kLargestStroke = 200;
constexpr double kThinnestLine = 0.5;
constexpr double kMiterLimit = 10;

QColor tint(const QString &chosen) {
    QColor color = QColor::fromString(chosen);
    if (!color.isValid()) {
        color = Qt::white;
    }
    color.setAlphaF(float(ShapeBlockContent::kTint));
    return color;
}

QPen strokePen(const Block &block) {
    double width = std::min(block.strokeWidth(), kLargestStroke);
    if (!(width > 0)) {
        if (isFilled(block.shapeType())) {
            return Qt::NoPen;
        }
        // Nothing else of it would be seen.
        width = kThinnestLine;
    }
    QPen pen(SketchRenderer::shownColor(block.strokeColor()), width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(kMiterLimit);
    return pen;
}

} // namespace

ShapeBlockContent::ShapeBlockContent(QQuickItem *parent)
    : EditedBody(parent)
    , m_outline(new PathDrawingItem(PathDrawingItem::Keeping::picture, this)) {}

QSizeF ShapeBlockContent::frameSize(QSizeF blockSize) {
    return blockSize.expandedTo(kSmallestFrame);
}

PathDrawing ShapeBlockContent::drawing(const Block &block, QSizeF frameSize) {
    const ShapeType shape = block.shapeType();
    QTransform flips;
    flips.translate(frameSize.width() / 2, frameSize.height() / 2);
    flips.scale(block.flipHorizontal() ? -1 : 1, block.flipVertical() ? -1 : 1);
    flips.translate(-frameSize.width() / 2, -frameSize.height() / 2);
    return PathDrawing({{.path = flips.map(shapeOutline(shape, {{0, 0}, frameSize})),
                         .fill = isFilled(shape) ? QBrush(tint(block.fillColor())) : QBrush(Qt::NoBrush),
                         .pen = strokePen(block)}});
}

void ShapeBlockContent::componentComplete() {
    EditedBody::componentComplete();
    connect(block(), &Block::contentChanged, this, &QQuickItem::polish);
    connect(block(), &Block::rawTextChanged, this, &ShapeBlockContent::labelChanged);
    followTextStyle(*block(), this, [this] {
        Q_EMIT labelFontChanged();
        updateIsLegible();
        refreshEditor();
    });
    const auto recolor = [this] {
        Q_EMIT labelColorChanged();
        refreshEditor();
    };
    connect(block(), &Block::textColorChanged, this, recolor);
    connect(&Theme::shared(), &Theme::changed, this, recolor);
    connect(&Theme::shared(), &Theme::changed, this, &QQuickItem::polish);
    updateIsLegible();
    polish();
}

void ShapeBlockContent::updatePolish() {
    m_outline->setPosition(frame().topLeft());
    m_outline->setDrawing(drawing(*block(), frame().size()));
}

void ShapeBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    EditedBody::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
        Q_EMIT frameChanged();
    }
}

void ShapeBlockContent::setZoom(double zoom) {
    EditedBody::setZoom(zoom);
    m_outline->setZoom(zoom);
}

void ShapeBlockContent::settleZoom() {
    EditedBody::settleZoom();
    m_outline->settleZoom();
}

QRectF ShapeBlockContent::frame() const {
    QRectF frame({0, 0}, frameSize(size()));
    frame.moveCenter(QRectF({0, 0}, size()).center());
    return frame;
}

QString ShapeBlockContent::label() const {
    return block()->rawTextOrEmpty().left(kLongestLabel);
}

QFont ShapeBlockContent::labelFont() const {
    return styledFont(*block(), {Theme::shared().uiFamily()}, block()->fontSize());
}

QColor ShapeBlockContent::labelColor() const {
    return Theme::shared().textColor(block()->textColor());
}

double ShapeBlockContent::textSize() const {
    return labelFont().pixelSize();
}

void ShapeBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    const QRectF room = frame().adjusted(kLabelPadding, kLabelPadding, -kLabelPadding, -kLabelPadding);
    editor.setPosition(room.topLeft());
    editor.setSize(room.size());
    editor.setFont(labelFont());
    editor.setTextColor(labelColor());
    editor.setIsStruck(block()->isStrikethrough());
}

} // namespace tallowby
