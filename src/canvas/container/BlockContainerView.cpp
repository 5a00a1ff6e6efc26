#include "canvas/container/BlockContainerView.h"

#include <QPropertyAnimation>
#include <QQmlComponent>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tallowby {

namespace {

/// Far more than a screen at any zoom; a record from elsewhere may claim any size.
constexpr double kLongestSide = 100'000;
constexpr qsizetype kSpokenLength = 200;
constexpr double kGrowthStart = 0.96;
constexpr std::chrono::milliseconds kGrowthDuration{120};
/// What a text block has before anything has measured it.
constexpr QSizeF kUnsizedText{300, 200};

double boundedSide(double side) {
    return std::clamp(side, 0.0, kLongestSide);
}

} // namespace

BlockContainerView::~BlockContainerView() {
    if (m_canvas) {
        m_canvas->forgetContainer(*this);
    }
}

void BlockContainerView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas != canvas) {
        m_canvas = canvas;
        Q_EMIT canvasChanged();
    }
}

void BlockContainerView::setBlock(Block *block) {
    if (m_block != block) {
        m_block = block;
        Q_EMIT blockChanged();
    }
}

const BlockKind &BlockContainerView::kind() const {
    return m_canvas->blockKinds().kind(m_block->blockType());
}

QAccessible::Role BlockContainerView::accessibleRole() const {
    return kind().accessibleRole;
}

QString BlockContainerView::accessibleName() const {
    const QString text = (m_body ? m_body->spokenText() : m_block->rawTextOrEmpty()).left(kSpokenLength);
    return text.isEmpty() ? kind().name : kind().name + QStringLiteral(": ") + text;
}

QString BlockContainerView::accessibleDescription() const {
    return tr("at %L1, %L2").arg(std::lround(m_block->xPosition())).arg(std::lround(m_block->yPosition()));
}

void BlockContainerView::announce() {
    QAccessibleEvent event(this, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void BlockContainerView::componentComplete() {
    QQuickItem::componentComplete();
    CanvasViewModel &viewModel = m_canvas->viewModel();
    m_hasCenteredOnSpawn = !viewModel.isSpawning(*m_block);

    connect(m_block, &Block::xPositionChanged, this, &BlockContainerView::followBlock);
    connect(m_block, &Block::yPositionChanged, this, &BlockContainerView::followBlock);
    connect(m_block, &Block::widthChanged, this, &BlockContainerView::followBlock);
    connect(m_block, &Block::heightChanged, this, &BlockContainerView::followBlock);
    connect(m_block, &Block::rotationChanged, this, &BlockContainerView::followBlock);
    connect(m_block, &Block::rawTextChanged, this, &BlockContainerView::accessibleNameChanged);
    connect(m_block, &Block::contentChanged, this, &BlockContainerView::accessibleNameChanged);
    connect(m_block, &Block::blockTypeChanged, this, &BlockContainerView::replaceBody);
    connect(m_block, &Block::isSelectedChanged, this, &BlockContainerView::showSelection);
    connect(&viewModel, &CanvasViewModel::focusedBlockIdChanged, this, &BlockContainerView::followFocus);

    showDrag(m_canvas->dragOffsetOf(*m_block));
    followBlock();
    showSelection();
    createBody();
    m_canvas->rememberContainer(*this);
    followFocus();
    if (viewModel.isSpawning(*m_block)) {
        appear();
    }
}

void BlockContainerView::createBody() {
    QQmlComponent &component = m_canvas->bodyComponent(m_block->blockType());
    QObject *object = component.beginCreate(qmlContext(m_canvas));
    m_body = qobject_cast<BlockBody *>(object);
    if (!m_body) {
        qFatal("The body of a block could not be made: %s", qUtf8Printable(component.errorString()));
    }
    QQmlEngine::setObjectOwnership(m_body, QQmlEngine::CppOwnership);
    m_body->setParent(this);
    m_body->attach(*m_block, *m_canvas, kind());
    letPointerIn(false);
    m_body->setParentItem(this);
    m_body->setSize(size());
    m_body->setZoom(m_canvas->zoom());
    component.completeCreate();
    connect(m_body, &BlockBody::measuredSizeChanged, this, &BlockContainerView::settle);
    settleAtStart();
    m_hasCenteredOnSpawn = true;
    Q_EMIT accessibleNameChanged();
}

/// The block has become one of another kind: what was typed into the old body stays with the block.
void BlockContainerView::replaceBody() {
    if (isEditing()) {
        m_canvas->viewModel().endEditing();
    }
    disconnect(m_body, nullptr, this, nullptr);
    m_body->setParentItem(nullptr);
    m_body->deleteLater();
    createBody();
}

void BlockContainerView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (m_body) {
        m_body->setSize(newGeometry.size());
    }
}

void BlockContainerView::followBlock() {
    setPosition(QPointF(m_block->xPosition(), m_block->yPosition()) + m_dragOffset);
    setSize({boundedSide(m_block->width()), boundedSide(m_block->height())});
    setRotation(m_block->rotation());
    m_canvas->blockMoved(*m_block);
}

void BlockContainerView::showDrag(std::optional<QPointF> dragOffset) {
    m_isDragging = dragOffset.has_value();
    m_dragOffset = dragOffset.value_or(QPointF());
    setPosition(QPointF(m_block->xPosition(), m_block->yPosition()) + m_dragOffset);
}

void BlockContainerView::settle() {
    const QSizeF measured = m_body->measuredSize();
    const QRectF stored(m_block->xPosition(), m_block->yPosition(), m_block->width(), m_block->height());
    const bool differs = std::abs(measured.width() - stored.width()) > kSettlingThreshold ||
                         std::abs(measured.height() - stored.height()) > kSettlingThreshold;
    if (!measured.isValid() || !differs) {
        return;
    }
    QRectF settled(stored.topLeft(), measured);
    if (!m_hasCenteredOnSpawn) {
        settled.moveCenter(stored.center());
    }
    m_canvas->viewModel().settleFrame(*m_block, settled);
}

/// A block that comes into view and measures less than it has been given keeps what it has: somebody made it larger.
/// One that nobody has sized yet takes its measure.
void BlockContainerView::settleAtStart() {
    const QSizeF measured = m_body->measuredSize();
    const QSizeF stored(m_block->width(), m_block->height());
    const bool isUnsized = !m_hasCenteredOnSpawn || stored == kUnsizedText;
    if (isUnsized || m_body->insistsOnSize() || stored.width() < measured.width() ||
        stored.height() < measured.height()) {
        settle();
    }
}

void BlockContainerView::followFocus() {
    const bool isFocused = m_canvas->viewModel().focusedBlock().get() == m_block && kind().isEditable;
    if (isEditing() == isFocused) {
        return;
    }
    if (QQuickItem *input = isFocused ? nullptr : m_body->inputItem()) {
        input->setFocus(false);
    }
    letPointerIn(isFocused);
    m_body->setIsEditing(isFocused);
    if (isFocused) {
        m_canvas->editorOpened();
    }
}

/// For each turn of a wheel and each press Qt Quick asks every item on the canvas whether it is meant, but not those in
/// an item that is not enabled; the several items of each of hundreds of bodies at rest are not.
void BlockContainerView::letPointerIn(bool isEditing) {
    m_body->setEnabled(isEditing || m_body->takesPointerAtRest());
}

void BlockContainerView::showSelection() {
    if (m_block->isSelected() == bool(m_selectionOutline)) {
        return;
    }
    if (!m_block->isSelected()) {
        m_selectionOutline.reset();
        return;
    }
    QQmlComponent *component = m_canvas->selectionOutline();
    m_selectionOutline.reset(qobject_cast<QQuickItem *>(component->beginCreate(component->creationContext())));
    m_selectionOutline->setParentItem(this);
    component->completeCreate();
}

/// Grows in; for those who want no movement, fades in.
void BlockContainerView::appear() {
    const bool isFading = m_canvas->prefersReducedMotion();
    auto *appearance =
        new QPropertyAnimation(this, isFading ? QByteArrayLiteral("opacity") : QByteArrayLiteral("scale"), this);
    appearance->setDuration(int(kGrowthDuration.count()));
    appearance->setStartValue(isFading ? 0.0 : kGrowthStart);
    appearance->setEndValue(1.0);
    appearance->setEasingCurve(QEasingCurve::OutQuad);
    appearance->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace tallowby
