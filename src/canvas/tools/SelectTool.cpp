#include "canvas/tools/SelectTool.h"

#include "canvas/model/CanvasViewModel.h"
#include "canvas/view/Viewport.h"

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

/// One function out of one for each state.
template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

/// Handles are often pulled by a few points only.
constexpr double kHandleThresholdShare = 0.5;

QPointF positionOf(const Block &block) {
    return {block.xPosition(), block.yPosition()};
}

} // namespace

std::optional<HandleLayout> SelectTool::handles(ToolContext &context) {
    const auto &selected = context.viewModel().selectedBlocks();
    if (selected.size() != 1 || context.viewModel().isAnyBlockEditing()) {
        return std::nullopt;
    }
    const Block &block = *selected.front();
    const Viewport &viewport = context.viewport();
    const QRectF frame(viewport.toScreen(positionOf(block)), QSizeF(block.width(), block.height()) * viewport.scale());
    return HandleLayout(frame, block.rotation());
}

void SelectTool::press(const PointerInput &input) {
    m_start = input;
    m_last = input;
    const auto layout = handles(context());
    m_state = Press{viewModel().blockAt(input.canvas), layout ? layout->handleAt(input.screen) : std::nullopt};
}

bool SelectTool::isDrag(const Press &press, const PointerInput &input) const {
    const double threshold = context().dragThreshold() * (press.handle ? kHandleThresholdShare : 1);
    return (input.screen - m_start.screen).manhattanLength() >= threshold;
}

void SelectTool::move(const PointerInput &input) {
    if (const Press *press = std::get_if<Press>(&m_state)) {
        if (!isDrag(*press, input)) {
            return;
        }
        // A copy: the new state takes the place of the one that holds it.
        m_state = stateOfDrag(Press(*press), input);
    }
    follow(input);
    m_last = input;
}

SelectTool::State SelectTool::stateOfDrag(const Press &press, const PointerInput &input) {
    if (press.handle) {
        return pullOf(*press.handle);
    }
    if (press.block) {
        return viewModel().focusedBlock() == press.block ? State(Nothing{}) : moveOf(press.block, input);
    }
    if (m_start.modifiers.testFlag(Qt::ShiftModifier)) {
        viewModel().endEditing();
        return Marquee{viewModel().selectedBlocks()};
    }
    return Pan{m_start.screen};
}

SelectTool::State SelectTool::pullOf(BlockHandle handle) const {
    // Another machine may have deleted the block since the press.
    if (!handles(context())) {
        return Nothing{};
    }
    const BlockPtr block = viewModel().selectedBlocks().front();
    const Corner *corner = std::get_if<Corner>(&handle);
    return corner ? State(Resize{ResizeGesture(block, *corner), handle}) : State(Rotate{RotateGesture(block)});
}

SelectTool::State SelectTool::moveOf(const BlockPtr &block, const PointerInput &input) {
    CanvasViewModel &model = viewModel();
    model.endEditing();
    if (!block->isSelected()) {
        if (m_start.modifiers.testFlag(Qt::ShiftModifier)) {
            model.toggleSelection(block);
        } else {
            model.selectOnly(block);
        }
    }
    const std::vector<BlockPtr> originals = model.selectedBlocks();
    // Most window managers keep a drag with Alt for themselves.
    if (!input.modifiers.testAnyFlags(Qt::AltModifier | Qt::ControlModifier)) {
        return Move{MoveGesture(originals), {}};
    }
    model.duplicateSelected();
    // A copied text is not what the user wants to type into in the middle of a drag.
    model.endEditing();
    constexpr QPointF kHead(CanvasViewModel::kDuplicateOffset, CanvasViewModel::kDuplicateOffset);
    return Move{MoveGesture(model.selectedBlocks(), kHead), originals};
}

void SelectTool::follow(const PointerInput &input) {
    const auto pan = [&](Pan &state) { context().panBy(input.screen - std::exchange(state.last, input.screen)); };
    const auto marquee = [&](const Marquee &state) {
        const QRectF rectangle = QRectF(m_start.canvas, input.canvas).normalized();
        context().showMarquee(rectangle);
        viewModel().selectIn(rectangle, state.selectedBefore);
    };
    std::visit(Overloaded{
                   pan,
                   marquee,
                   [&](const Move &state) {
                       context().showDrag(state.gesture.blocks(), state.gesture.dragOffset(translation(input)));
                   },
                   [&](Resize &state) { state.gesture.change(viewModel(), translation(input)); },
                   [&](Rotate &state) { state.gesture.change(translation(input).x()); },
                   [](const auto &) {},
               },
               m_state);
}

void SelectTool::release(const PointerInput &input) {
    move(input);
    // What follows may ask for the shape of the pointer, which is that of no gesture any more.
    State state = std::exchange(m_state, {});
    std::visit(Overloaded{
                   [&](const Press &press) {
                       // A handle reaches into its block; whoever clicks there means the block.
                       if (press.block || !press.handle) {
                           click(press.block);
                       }
                   },
                   [&](const Marquee &) { context().showMarquee(std::nullopt); },
                   [&](Move &moved) {
                       context().showDrag({}, {});
                       moved.gesture.end(viewModel(), translation(input));
                   },
                   [&](Resize &resized) { resized.gesture.end(viewModel(), translation(input)); },
                   [&](Rotate &rotated) { rotated.gesture.end(viewModel(), translation(input).x()); },
                   [](const auto &) {},
               },
               state);
}

bool SelectTool::interrupt() {
    if (std::holds_alternative<Pan>(m_state)) {
        m_state = {};
        return true;
    }
    cancel();
    return false;
}

void SelectTool::cancel() {
    State state = std::exchange(m_state, {});
    std::visit(Overloaded{
                   [&](const Pan &pan) { context().panBy(m_start.screen - pan.last); },
                   [&](const Marquee &marquee) {
                       context().showMarquee(std::nullopt);
                       viewModel().select(marquee.selectedBefore);
                   },
                   [&](const Move &moved) {
                       context().showDrag({}, {});
                       if (!moved.originals.empty()) {
                           std::ranges::for_each(moved.gesture.blocks(), [this](const BlockPtr &copy) {
                               viewModel().deleteBlockSilently(copy);
                           });
                           viewModel().select(moved.originals);
                       }
                   },
                   [&](Resize &resized) { resized.gesture.cancel(viewModel()); },
                   [&](Rotate &rotated) { rotated.gesture.cancel(); },
                   [](const auto &) {},
               },
               state);
}

void SelectTool::click(const BlockPtr &block) {
    CanvasViewModel &model = viewModel();
    if (!block) {
        model.deselectAll();
        context().canvasClicked();
    } else if (m_start.modifiers.testFlag(Qt::ShiftModifier)) {
        model.endEditing();
        model.toggleSelection(block);
    } else if (context().clickBody(*block, m_start)) {
        return;
    } else if (context().isEditable(*block) && (context().opensAtFirstClick(*block) || isOnlySelection(block))) {
        context().edit(block, m_start.screen);
    } else if (isOnlySelection(block) && context().activate(block)) {
        return;
    } else {
        model.endEditing();
        model.selectOnly(block);
    }
}

bool SelectTool::isOnlySelection(const BlockPtr &block) const {
    return viewModel().selectedBlocks().size() == 1 && block->isSelected();
}

Qt::CursorShape SelectTool::cursor(const PointerInput &input) const {
    const auto layout = handles(context());
    if (const Resize *resize = std::get_if<Resize>(&m_state); resize && layout) {
        return layout->cursorOf(resize->handle);
    }
    if (std::holds_alternative<Rotate>(m_state)) {
        return layout ? layout->cursorOf(RotationHandle{}) : Qt::ArrowCursor;
    }
    if (std::holds_alternative<Pan>(m_state)) {
        return Qt::ClosedHandCursor;
    }
    if (const Move *moved = std::get_if<Move>(&m_state)) {
        return moved->originals.empty() ? Qt::SizeAllCursor : Qt::DragCopyCursor;
    }
    if (std::holds_alternative<Marquee>(m_state)) {
        return Qt::CrossCursor;
    }
    if (layout) {
        if (const auto handle = layout->handleAt(input.screen)) {
            return layout->cursorOf(*handle);
        }
    }
    const BlockPtr block = viewModel().blockAt(input.canvas);
    if (!block) {
        return Qt::ArrowCursor;
    }
    if (const auto shape = context().bodyCursor(*block, input)) {
        return *shape;
    }
    const bool opens = context().isEditable(*block) && (context().opensAtFirstClick(*block) || isOnlySelection(block));
    return opens ? Qt::IBeamCursor : Qt::SizeAllCursor;
}

} // namespace tallowby
