#include "guidance/CanvasTutorialOverlayView.h"

#include "canvas/overlay/menu/ContextMenuView.h"
#include "canvas/overlay/minimap/MiniMapView.h"
#include "guidance/TutorialCardPlacement.h"

#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>

namespace tallowby {

namespace {

/// What a note takes until its first words are written.
constexpr QSizeF kFirstWords{280, 72};
constexpr double kBesideNote = 16;

QRectF rectOf(const Block &block) {
    return {block.xPosition(), block.yPosition(), block.width(), block.height()};
}

} // namespace

CanvasTutorialOverlayView::CanvasTutorialOverlayView(QQuickItem *parent)
    : QQuickItem(parent) {}

CanvasTutorialOverlayView::~CanvasTutorialOverlayView() = default;

CanvasTutorialOverlayView *CanvasTutorialOverlayView::install(QQmlEngine &engine, InfiniteCanvasView &canvas,
                                                              UserDefaults &defaults) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/Guidance/CanvasTutorialOverlay.qml")));
    auto *overlay = qobject_cast<CanvasTutorialOverlayView *>(component.beginCreate(engine.rootContext()));
    if (!overlay) {
        qFatal("The tutorial could not be made: %s", qUtf8Printable(component.errorString()));
    }
    overlay->setParent(&canvas);
    overlay->attach(canvas, defaults);
    overlay->setParentItem(&canvas);
    // A menu that is asked for opens in front of the card that asks for it.
    if (const auto *menu = canvas.findChild<ContextMenuView *>()) {
        overlay->stackBefore(menu);
    }
    component.completeCreate();
    return overlay;
}

void CanvasTutorialOverlayView::attach(InfiniteCanvasView &canvas, UserDefaults &defaults) {
    m_canvas = &canvas;
    m_model = std::make_unique<CanvasTutorialModel>(defaults);
    if (!m_model->isActive()) {
        return; // It never comes back.
    }
    m_miniMap = canvas.findChild<MiniMapView *>();
    m_glide.setCanvas(&canvas);
    connect(m_model.get(), &CanvasTutorialModel::isActiveChanged, this, &CanvasTutorialOverlayView::isActiveChanged);
    connect(m_model.get(), &CanvasTutorialModel::stepChanged, this, &CanvasTutorialOverlayView::stepChanged);
    connect(m_model.get(), &CanvasTutorialModel::stepChanged, this, &CanvasTutorialOverlayView::placeChanged);
    // The card points at the map, which has to be there for that.
    for (const auto signal : {&CanvasTutorialModel::isActiveChanged, &CanvasTutorialModel::stepChanged}) {
        connect(m_model.get(), signal, this, [this] {
            if (m_miniMap) {
                m_miniMap->setIsIntroduced(isActive() && isLast());
            }
        });
    }
    connect(&canvas.viewModel(), &CanvasViewModel::blocksChanged, this,
            &CanvasTutorialOverlayView::canShowMiniMapChanged);
    connect(&canvas, &InfiniteCanvasView::typedAnywhere, this, &CanvasTutorialOverlayView::typedAnywhere);
    connect(&canvas, &InfiniteCanvasView::contextMenuRequested, m_model.get(),
            [this] { m_model->notifyRightClicked(); });
    canvas.installEventFilter(this);
}

QString CanvasTutorialOverlayView::symbol() const {
    switch (m_model->step()) {
    case CanvasTutorialStep::welcome:
        return QStringLiteral("square.and.pencil");
    case CanvasTutorialStep::pointAndType:
        return QStringLiteral("keyboard");
    case CanvasTutorialStep::rightClick:
        return QStringLiteral("cursorarrow");
    case CanvasTutorialStep::miniMap:
        return QStringLiteral("map");
    }
    return {};
}

void CanvasTutorialOverlayView::setCardSize(QSizeF size) {
    if (m_cardSize != size) {
        m_cardSize = size;
        Q_EMIT placeChanged();
    }
}

QPointF CanvasTutorialOverlayView::cardPosition() const {
    return tutorialCardPosition(m_model->step(), {size(), m_cardSize, m_keepClear, miniMapFrame()});
}

QRectF CanvasTutorialOverlayView::miniMapFrame() const {
    return m_miniMap ? mapRectFromItem(m_miniMap, m_miniMap->boundingRect()) : QRectF();
}

void CanvasTutorialOverlayView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        Q_EMIT placeChanged();
    }
}

void CanvasTutorialOverlayView::typedAnywhere() {
    if (const BlockPtr note = m_canvas->viewModel().focusedBlock()) {
        const QPointF corner = m_canvas->viewport().toScreen({note->xPosition(), note->yPosition()});
        m_keepClear = QRectF(corner, kFirstWords).adjusted(-kBesideNote, -kBesideNote, kBesideNote, kBesideNote);
        Q_EMIT placeChanged();
    }
    m_model->notifyPointAndTypeUsed();
}

void CanvasTutorialOverlayView::showMiniMap() {
    if (!m_miniMap || !canShowMiniMap()) {
        return;
    }
    if (!m_miniMap->isNeeded()) {
        QRectF all;
        for (const BlockPtr &block : m_canvas->viewModel().blocks()) {
            all |= rectOf(*block);
        }
        // To where the edge of the view cuts through what there is.
        m_glide.glideTo(QPointF(-width() / 2, m_canvas->offset().y()) -
                        QPointF(m_canvas->zoom() * all.center().x(), 0));
    }
    if (!m_isMiniMapHighlighted) {
        m_isMiniMapHighlighted = true;
        Q_EMIT isMiniMapHighlightedChanged();
    }
}

bool CanvasTutorialOverlayView::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress && watched == m_canvas && isActive()) {
        return handleKey(*static_cast<QKeyEvent *>(event));
    }
    return QQuickItem::eventFilter(watched, event);
}

/// What is in front of the cards, or being done, comes first.
bool CanvasTutorialOverlayView::handleKey(const QKeyEvent &event) {
    const CanvasViewModel &model = m_canvas->viewModel();
    if (m_canvas->isHelpVisible() || m_canvas->isSearchVisible() || m_canvas->isGestureRunning() ||
        model.isAnyBlockEditing() || !model.selectedBlocks().empty() ||
        model.activeTool().kind() != CanvasTool::Kind::select || event.modifiers() & ~Qt::KeypadModifier) {
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Escape:
        finish();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        advance();
        return true;
    default:
        return false;
    }
}

} // namespace tallowby
