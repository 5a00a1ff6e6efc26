#include "canvas/overlay/palette/ToolPaletteView.h"

#include "canvas/drawing/SketchRenderer.h"
#include "canvas/model/CanvasTool.h"
#include "canvas/overlay/ShapeChoices.h"
#include "platform/theme/Theme.h"

#include <QMouseEvent>
#include <QQuickWindow>

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

using Kind = CanvasTool::Kind;

/// In the order of their digits.
constexpr std::array kTools{Kind::select, Kind::hand,  Kind::pencil,     Kind::eraser,   Kind::text,
                            Kind::shape,  Kind::image, Kind::stickyNote, Kind::voiceNote};
/// How near the pointer has to come, in points.
constexpr double kNear = 32;

} // namespace

ToolPaletteView::ToolPaletteView(QQuickItem *parent)
    : QQuickItem(parent) {
    connect(&Theme::shared(), &Theme::changed, this, &ToolPaletteView::pencilColorsChanged);
}

void ToolPaletteView::setViewModel(CanvasViewModel *viewModel) {
    if (m_viewModel == viewModel) {
        return;
    }
    m_viewModel = viewModel;
    if (viewModel) {
        connect(viewModel, &CanvasViewModel::activeToolChanged, this, &ToolPaletteView::noteTool);
        noteTool();
    }
    Q_EMIT viewModelChanged();
}

QVariantList ToolPaletteView::tools() {
    const std::array<PaletteChoice, kTools.size()> choices{{{QStringLiteral("cursorarrow"), tr("Select")},
                                                            {QStringLiteral("hand.draw"), tr("Hand")},
                                                            {QStringLiteral("pencil"), tr("Pencil")},
                                                            {QStringLiteral("eraser"), tr("Eraser")},
                                                            {QStringLiteral("textformat"), tr("Text")},
                                                            {QStringLiteral("square.on.circle"), tr("Shape")},
                                                            {QStringLiteral("photo"), tr("Image")},
                                                            {QStringLiteral("note.text"), tr("Sticky note")},
                                                            {QStringLiteral("mic"), tr("Voice note")}}};
    QVariantList list;
    for (const PaletteChoice &choice : choices) {
        list << QVariant::fromValue(choice);
    }
    return list;
}

QVariantList ToolPaletteView::shapes() {
    QVariantList list;
    for (const ShapeChoice &shape : shapeChoices()) {
        list << QVariant::fromValue(PaletteChoice{shape.symbol, shape.name});
    }
    return list;
}

QVariantList ToolPaletteView::pencilColors() {
    const auto color = [](const QString &value, const QString &name) {
        return QVariant::fromValue(PencilColor{value, SketchRenderer::shownColor(value), name});
    };
    return {color(QStringLiteral("#333333"), tr("Graphite")), color(QStringLiteral("#D64541"), tr("Red")),
            color(QStringLiteral("#E67E22"), tr("Orange")),   color(QStringLiteral("#27AE60"), tr("Green")),
            color(QStringLiteral("#2F6BEB"), tr("Blue")),     color(QStringLiteral("#8E4BD6"), tr("Purple"))};
}

QVariantList ToolPaletteView::pencilWidths() {
    return {1.5, 3.0, 6.0, 12.0};
}

int ToolPaletteView::activeTool() const {
    return int(std::ranges::find(kTools, m_viewModel->activeTool().kind()) - kTools.begin());
}

int ToolPaletteView::activeShape() const {
    const CanvasTool tool = m_viewModel->activeTool();
    if (tool.kind() != Kind::shape) {
        return -1;
    }
    return int(std::ranges::find(shapeChoices(), tool.shapeType(), &ShapeChoice::type) - shapeChoices().begin());
}

bool ToolPaletteView::isPencilActive() const {
    return m_viewModel->activeTool().kind() == Kind::pencil;
}

void ToolPaletteView::setIsGestureRunning(bool isRunning) {
    if (m_isGestureRunning == isRunning) {
        return;
    }
    m_isGestureRunning = isRunning;
    m_isPointerNear = false;
    // While the canvas holds the pointer, nothing hovers here.
    if (window() && isRunning) {
        window()->installEventFilter(this);
    } else if (window()) {
        window()->removeEventFilter(this);
    }
    Q_EMIT isGestureRunningChanged();
    Q_EMIT isFaintChanged();
}

bool ToolPaletteView::isFaint() const {
    const Kind kind = m_viewModel->activeTool().kind();
    const bool draws = kind == Kind::pencil || kind == Kind::eraser || kind == Kind::shape;
    return m_isGestureRunning && draws && !m_isPointerNear;
}

void ToolPaletteView::chooseTool(int place) {
    const Kind kind = kTools.at(std::size_t(place));
    m_viewModel->setActiveTool(kind == Kind::shape ? CanvasTool::shape(m_lastShape) : CanvasTool(kind));
}

void ToolPaletteView::chooseShape(int place) {
    m_viewModel->setActiveTool(CanvasTool::shape(shapeChoices().at(std::size_t(place)).type));
}

void ToolPaletteView::toggleLock() {
    m_viewModel->setToolLocked(!m_viewModel->toolLocked());
}

void ToolPaletteView::noteTool() {
    if (const CanvasTool tool = m_viewModel->activeTool(); tool.kind() == Kind::shape) {
        m_lastShape = tool.shapeType();
    }
    Q_EMIT activeToolChanged();
    Q_EMIT isFaintChanged();
}

bool ToolPaletteView::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::MouseMove) {
        const QPointF pointer = mapFromScene(static_cast<QMouseEvent *>(event)->scenePosition());
        setIsPointerNear(boundingRect().adjusted(-kNear, -kNear, kNear, kNear).contains(pointer));
    }
    return QQuickItem::eventFilter(watched, event);
}

void ToolPaletteView::setIsPointerNear(bool isNear) {
    if (m_isPointerNear != isNear) {
        m_isPointerNear = isNear;
        Q_EMIT isFaintChanged();
    }
}

} // namespace tallowby
