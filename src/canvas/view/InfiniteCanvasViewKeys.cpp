#include "canvas/view/InfiniteCanvasView.h"

#include "canvas/container/BlockContainerView.h"
#include "canvas/view/CanvasKeys.h"
#include "canvas/view/typing/CaretFollower.h"
#include "platform/VirtualKey.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

/// In canvas points.
constexpr double kNudge = 2;
constexpr double kLargeNudge = 20;
/// From 1 on, as they stand on the palette.
constexpr std::array kToolsByDigit{
    CanvasTool::Kind::select, CanvasTool::Kind::hand,       CanvasTool::Kind::pencil,
    CanvasTool::Kind::eraser, CanvasTool::Kind::text,       CanvasTool::Kind::shape,
    CanvasTool::Kind::image,  CanvasTool::Kind::stickyNote, CanvasTool::Kind::voiceNote,
};
constexpr int kShapeTypeCount = 7;

} // namespace

void InfiniteCanvasView::keyPressEvent(QKeyEvent *event) {
    followCommandKey(*event, true);
    event->setAccepted(handleKey(*event));
}

void InfiniteCanvasView::keyReleaseEvent(QKeyEvent *event) {
    followCommandKey(*event, false);
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        setIsBlankHeld(false);
    }
    event->ignore();
}

/// A pointer that rests on a link shows at once what a click would do.
void InfiniteCanvasView::followCommandKey(const QKeyEvent &event, bool isHeld) {
    if (event.key() == Qt::Key_Control) {
        m_pointer.modifiers.setFlag(Qt::ControlModifier, isHeld);
        updateCursor();
    }
}

void InfiniteCanvasView::focusOutEvent(QFocusEvent *event) {
    QQuickItem::focusOutEvent(event);
    setIsBlankHeld(false);
}

bool InfiniteCanvasView::handleKey(const QKeyEvent &event) {
    if (typedText(event).isEmpty() && !isModifierKey(event)) {
        m_leadingKeys.clear();
    }
    if (m_tools.isPressed()) {
        return handleGestureKey(event);
    }
    if (event.key() == Qt::Key_F6) {
        Q_EMIT toolbarRequested();
        return true;
    }
    if (isCommandHeld(event.modifiers()) && handleStyleKey(event)) {
        return true;
    }
    if (m_viewModel->isAnyBlockEditing()) {
        return forwardToEditor(event);
    }
    return isCommandHeld(event.modifiers()) ? handleCommandKey(event) : handlePlainKey(event);
}

/// While a button is down, the keys have to wait: whatever they would do, they would do it to what is being moved. What
/// is typed into an editor is, though the paper moves below it.
bool InfiniteCanvasView::handleGestureKey(const QKeyEvent &event) {
    if (virtualKeyOf(event) == keycode::kEscape) {
        cancelGesture();
        return true;
    }
    return !m_viewModel->isAnyBlockEditing() || forwardToEditor(event);
}

/// Keys that arrive here while the editor has not taken the focus yet are the editor's; a key that comes up from the
/// editor itself is nobody's.
bool InfiniteCanvasView::forwardToEditor(const QKeyEvent &event) {
    QQuickItem *input = editorInput();
    if (!input || input->hasActiveFocus()) {
        return false;
    }
    const std::unique_ptr<QKeyEvent> copy(event.clone());
    QCoreApplication::sendEvent(input, copy.get());
    return copy->isAccepted();
}

/// For selected texts, and the one that is being edited. On for all of them, unless it is on for all already.
bool InfiniteCanvasView::handleStyleKey(const QKeyEvent &event) {
    using TextStyle = CanvasViewModel::TextStyle;
    const bool isShiftHeld = event.modifiers().testFlag(Qt::ShiftModifier);
    std::optional<TextStyle> style;
    bool (Block::*isOn)() const = nullptr;
    if (isShortcutKey(event, Qt::Key_B) && !isShiftHeld) {
        style = TextStyle::bold;
        isOn = &Block::isBold;
    } else if (isShortcutKey(event, Qt::Key_I) && !isShiftHeld) {
        style = TextStyle::italic;
        isOn = &Block::isItalic;
    } else if (isShortcutKey(event, Qt::Key_X) && isShiftHeld) {
        style = TextStyle::strikethrough;
        isOn = &Block::isStrikethrough;
    }
    std::vector<BlockPtr> texts = style ? m_viewModel->selectedBlocks() : std::vector<BlockPtr>();
    std::erase_if(texts,
                  [this](const BlockPtr &block) { return !m_blockKinds->kind(block->blockType()).hasTextStyle; });
    const bool wasOn = std::ranges::all_of(texts, [isOn](const BlockPtr &block) { return ((*block).*isOn)(); });
    for (const BlockPtr &text : texts) {
        m_viewModel->setTextStyle(*text, *style, !wasOn);
    }
    return !texts.empty();
}

bool InfiniteCanvasView::handleCommandKey(const QKeyEvent &event) {
    const bool isShiftHeld = event.modifiers().testFlag(Qt::ShiftModifier);
    if (isShortcutKey(event, Qt::Key_A)) {
        m_viewModel->selectAll();
    } else if (isShortcutKey(event, Qt::Key_D)) {
        m_viewModel->duplicateSelected();
    } else if (isShortcutKey(event, Qt::Key_F)) {
        setIsHelpVisible(false);
        setIsSearchVisible(!m_isSearchVisible);
    } else if (isShortcutKey(event, Qt::Key_Y) || (isShortcutKey(event, Qt::Key_Z) && isShiftHeld)) {
        m_viewModel->redoGesture();
    } else if (isShortcutKey(event, Qt::Key_Z)) {
        m_viewModel->undoGesture();
    } else if (isShortcutKey(event, Qt::Key_X) && !isShiftHeld) {
        m_viewModel->cutSelected();
    } else if (isShortcutKey(event, Qt::Key_C)) {
        m_viewModel->copySelected();
    } else if (isShortcutKey(event, Qt::Key_V)) {
        m_viewModel->handlePaste(pointerOnCanvas());
    } else if (isShortcutKey(event, Qt::Key_Equal) || isShortcutKey(event, Qt::Key_Plus)) {
        zoomIn();
    } else if (isShortcutKey(event, Qt::Key_Minus)) {
        zoomOut();
    } else if (isShortcutKey(event, Qt::Key_0)) {
        resetZoom();
    } else {
        return false;
    }
    return true;
}

bool InfiniteCanvasView::handlePlainKey(const QKeyEvent &event) {
    if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) {
        return walk(event.key() == Qt::Key_Tab ? CanvasViewModel::ReadingDirection::forward
                                               : CanvasViewModel::ReadingDirection::backward);
    }
    const bool isMenuKey =
        event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && event.modifiers().testFlag(Qt::ShiftModifier));
    if (isMenuKey) {
        requestMenuOfSelection();
        return true;
    }
    if (handleNamedKey(event)) {
        return true;
    }
    const QString text = typedText(event);
    if (text.isEmpty()) {
        return false;
    }
    const LeadingKeys::Effects before = keyEffects();
    const Scheduler::Duration now = m_viewModel->scheduler().monotonic();
    if (text.size() > 1 || m_leadingKeys.isBeginningOf(text, before, now) || !actOnCharacter(text.front(), event)) {
        typeAnywhere(text);
        return true;
    }
    // A "?" that puts the help away begins nothing.
    const bool isHelpClosed = before.isHelpVisible && !m_isHelpVisible;
    const bool isBeginning = text != u' ' && (!isHelpClosed || m_leadingKeys.isFresh(before, now));
    if (isBeginning && !event.isAutoRepeat()) {
        m_leadingKeys.add(text, before, keyEffects(), now);
    }
    return true;
}

bool InfiniteCanvasView::actOnCharacter(QChar character, const QKeyEvent &event) {
    if (character == u' ') {
        // Held, it turns the pointer into a hand; a blank alone is no note.
        setIsBlankHeld(true);
        return true;
    }
    const bool isDigit = character >= u'1' && character <= u'9';
    // A key that is held down acts once: repeated, it would lock and unlock the tool.
    if (character == u'?' && !event.isAutoRepeat()) {
        setIsHelpVisible(!m_isHelpVisible);
    } else if (isDigit && !event.isAutoRepeat()) {
        chooseTool(character.unicode() - u'0');
    }
    return character == u'?' || isDigit;
}

LeadingKeys::Effects InfiniteCanvasView::keyEffects() const {
    return {m_viewModel->activeTool(), m_viewModel->toolLocked(), m_isHelpVisible};
}

bool InfiniteCanvasView::handleNamedKey(const QKeyEvent &event) {
    // A blank is no key of a name here.
    switch (virtualKeyOf(event).value_or(keycode::kSpace)) {
    case keycode::kEscape:
        escape();
        return true;
    case keycode::kDelete:
    case keycode::kForwardDelete:
        m_viewModel->deleteSelected();
        return true;
    case keycode::kReturn:
        editSelected();
        return true;
    case keycode::kLeftArrow:
        nudge(-1, 0, event.modifiers());
        return true;
    case keycode::kRightArrow:
        nudge(1, 0, event.modifiers());
        return true;
    case keycode::kUpArrow:
        nudge(0, -1, event.modifiers());
        return true;
    case keycode::kDownArrow:
        nudge(0, 1, event.modifiers());
        return true;
    default:
        return false;
    }
}

void InfiniteCanvasView::escape() {
    if (m_isHelpVisible) {
        setIsHelpVisible(false);
        return;
    }
    m_viewModel->setActiveTool(CanvasTool::Kind::select);
    m_viewModel->deselectAll();
}

/// The digit again locks the tool, or lets it go; that of the shapes steps through them.
void InfiniteCanvasView::chooseTool(int digit) {
    const CanvasTool active = m_viewModel->activeTool();
    CanvasTool chosen(kToolsByDigit[std::size_t(digit - 1)]);
    if (chosen.kind() == CanvasTool::Kind::shape && active.kind() == CanvasTool::Kind::shape) {
        chosen = CanvasTool::shape(ShapeType((int(active.shapeType()) + 1) % kShapeTypeCount));
    } else if (chosen.kind() == active.kind() && active.kind() != CanvasTool::Kind::select) {
        m_viewModel->setToolLocked(!m_viewModel->toolLocked());
    }
    m_viewModel->setActiveTool(chosen);
}

/// From block to block as a page is read, and out to the buttons after the last.
bool InfiniteCanvasView::walk(CanvasViewModel::ReadingDirection direction) {
    const auto &selected = m_viewModel->selectedBlocks();
    const BlockPtr from = selected.empty() ? nullptr : selected.back();
    const BlockPtr next = m_viewModel->nextInReadingOrder(from, direction);
    const bool isEnd = !next || (from && next == m_viewModel->nextInReadingOrder(nullptr, direction));
    if (isEnd) {
        m_viewModel->deselectAll();
        return false;
    }
    m_viewModel->selectOnly(next);
    bringIntoView(*next);
    if (BlockContainerView *container = containerOf(next.get())) {
        container->announce();
    }
    return true;
}

void InfiniteCanvasView::requestMenuOfSelection() {
    const auto &selected = m_viewModel->selectedBlocks();
    if (selected.empty()) {
        const QPointF place = pointerOnCanvas();
        m_viewModel->setRightClickCursorPos(place);
        Q_EMIT contextMenuRequested(m_viewport.toScreen(place), nullptr);
        return;
    }
    const BlockPtr block = selected.back();
    bringIntoView(*block);
    const QPointF middle = QRectF(block->xPosition(), block->yPosition(), block->width(), block->height()).center();
    m_viewModel->setRightClickCursorPos(middle);
    Q_EMIT contextMenuRequested(m_viewport.toScreen(middle), block.get());
}

void InfiniteCanvasView::editSelected() {
    const auto &selected = m_viewModel->selectedBlocks();
    if (!selected.empty() && isEditable(*selected.back())) {
        const BlockPtr block = selected.back();
        bringIntoView(*block);
        m_viewModel->beginEditing(block);
    } else if (!selected.empty()) {
        activate(BlockPtr(selected.back()));
    }
}

void InfiniteCanvasView::nudge(double dx, double dy, Qt::KeyboardModifiers modifiers) {
    const double step = modifiers.testFlag(Qt::ShiftModifier) ? kLargeNudge : kNudge;
    m_viewModel->moveSelectedBlocks(step * dx, step * dy);
}

QPointF InfiniteCanvasView::pointerOnCanvas() const {
    const QPointF pointer = mapFromGlobal(QCursor::pos());
    return m_viewport.toCanvas(contains(pointer) ? pointer : m_viewport.center());
}

void InfiniteCanvasView::typeAnywhere(const QString &text) {
    const QString leading = takeLeadingKeys(text);
    // Whoever types wants to see it.
    setIsHelpVisible(false);
    const QPointF place = m_noteColumn.placeFor(QCursor::pos(), pointerOnCanvas());
    m_noteColumn.add(m_viewModel->spawnBlock(place, BlockType::text, leading + text));
    Q_EMIT typedAnywhere();
}

/// The keys that begin the text, and what they did is taken back.
QString InfiniteCanvasView::takeLeadingKeys(const QString &next) {
    if (!m_leadingKeys.isBeginningOf(next, keyEffects(), m_viewModel->scheduler().monotonic())) {
        m_leadingKeys.clear();
        return {};
    }
    m_viewModel->setToolLocked(m_leadingKeys.before().isToolLocked);
    m_viewModel->setActiveTool(m_leadingKeys.before().tool);
    return m_leadingKeys.take();
}

} // namespace tallowby
