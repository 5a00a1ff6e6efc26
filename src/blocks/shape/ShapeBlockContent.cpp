#include "blocks/shape/ShapeBlockContent.h"

#include "blocks/shape/ShapeOutlines.h"
#include "canvas/drawing/PathDrawingItem.h"
#include "canvas/drawing/SketchRenderer.h"
#include "platform/theme/Theme.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// A record from elsewhere may claim any number.
constexpr double kSmallestFont = 1;
constexpr double kLargestFont = 400;
constexpr double kLargestStroke = 200;
constexpr double kMiterLimit = 10;
const QUrl kEditorFile(QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/LabelEditor.qml"));

QColor tint(const QString &chosen) {
    QColor color = QColor::fromString(chosen);
    if (!color.isValid()) {
        color = Qt::white;
    }
    color.setAlphaF(float(ShapeBlockContent::kTint));
    return color;
}

QPen strokePen(const Block &block) {
    const double width = std::min(block.strokeWidth(), kLargestStroke);
    if (!(width > 0)) {
        return Qt::NoPen;
    }
    QPen pen(SketchRenderer::shownColor(block.strokeColor()), width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(kMiterLimit);
    return pen;
}

} // namespace

ShapeBlockContent::ShapeBlockContent(QQuickItem *parent)
    : BlockBody(parent)
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
    BlockBody::componentComplete();
    connect(block(), &Block::contentChanged, this, &QQuickItem::polish);
    connect(block(), &Block::rawTextChanged, this, &ShapeBlockContent::labelChanged);
    connect(block(), &Block::fontSizeChanged, this, &ShapeBlockContent::labelFontChanged);
    connect(block(), &Block::fontSizeChanged, this, &ShapeBlockContent::updateIsLegible);
    connect(block(), &Block::isBoldChanged, this, &ShapeBlockContent::labelFontChanged);
    connect(block(), &Block::isItalicChanged, this, &ShapeBlockContent::labelFontChanged);
    connect(block(), &Block::isStrikethroughChanged, this, &ShapeBlockContent::labelFontChanged);
    connect(block(), &Block::textColorChanged, this, &ShapeBlockContent::labelColorChanged);
    connect(&Theme::shared(), &Theme::changed, this, &ShapeBlockContent::labelColorChanged);
    connect(&Theme::shared(), &Theme::changed, this, &QQuickItem::polish);
    updateIsLegible();
    polish();
}

void ShapeBlockContent::updatePolish() {
    m_outline->setPosition(frame().topLeft());
    m_outline->setDrawing(drawing(*block(), frame().size()));
}

void ShapeBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
        dressEditor();
        Q_EMIT frameChanged();
    }
}

void ShapeBlockContent::setZoom(double zoom) {
    BlockBody::setZoom(zoom);
    m_outline->setZoom(zoom);
}

void ShapeBlockContent::settleZoom() {
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
    const double size = block()->fontSize();
    QFont font(Theme::shared().uiFamily());
    font.setPixelSize(std::isfinite(size) ? int(std::lround(std::clamp(size, kSmallestFont, kLargestFont))) : 1);
    font.setBold(block()->isBold());
    font.setItalic(block()->isItalic());
    font.setStrikeOut(block()->isStrikethrough());
    return font;
}

QColor ShapeBlockContent::labelColor() const {
    return Theme::shared().textColor(block()->textColor());
}

double ShapeBlockContent::textSize() const {
    return labelFont().pixelSize();
}

void ShapeBlockContent::setIsEditing(bool isEditing) {
    if (isEditing && !m_editor) {
        openEditor();
    } else if (!isEditing && m_editor) {
        closeEditor();
    }
    BlockBody::setIsEditing(isEditing);
    Q_EMIT isLabelShownChanged();
}

void ShapeBlockContent::openEditor() {
    QQmlComponent component(qmlEngine(this), kEditorFile);
    QObject *object = component.beginCreate(qmlContext(this));
    m_editor = qobject_cast<AutoExpandingTextEditor *>(object);
    if (!m_editor) {
        qFatal("The label's editor could not be made: %s", qUtf8Printable(component.errorString()));
    }
    m_editor->setParent(this);
    m_editor->setParentItem(this);
    m_editor->setText(block()->rawTextOrEmpty());
    dressEditor();
    component.completeCreate();

    connect(block(), &Block::rawTextChanged, m_editor, [this] { m_editor->setText(block()->rawTextOrEmpty()); });
    connect(this, &ShapeBlockContent::labelFontChanged, m_editor, [this] { dressEditor(); });
    connect(this, &ShapeBlockContent::labelColorChanged, m_editor, [this] { dressEditor(); });
    connect(m_editor, &AutoExpandingTextEditor::textChanged, this,
            [this] { viewModel().setText(*block(), m_editor->text()); });
    connect(m_editor, &AutoExpandingTextEditor::committed, this, [this] { viewModel().endEditing(); });
}

void ShapeBlockContent::closeEditor() {
    // It may be in the middle of the key press that closes it.
    m_editor->disconnect(this);
    block()->disconnect(m_editor);
    disconnect(m_editor);
    m_editor->setVisible(false);
    m_editor->deleteLater();
    m_editor = nullptr;
}

void ShapeBlockContent::dressEditor() {
    if (m_editor) {
        const QRectF room = frame().adjusted(kLabelPadding, kLabelPadding, -kLabelPadding, -kLabelPadding);
        m_editor->setPosition(room.topLeft());
        m_editor->setSize(room.size());
        m_editor->setFont(labelFont());
        m_editor->setTextColor(labelColor());
    }
}

QQuickItem *ShapeBlockContent::inputItem() const {
    return m_editor ? m_editor->textEdit() : nullptr;
}

void ShapeBlockContent::placeCaret(QPointF point) {
    if (m_editor) {
        m_editor->placeCaret(mapToItem(m_editor, point));
    }
}

} // namespace tallowby
