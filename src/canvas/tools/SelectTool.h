#pragma once

#include "canvas/container/HandleLayout.h"
#include "canvas/container/MoveGesture.h"
#include "canvas/container/ResizeGesture.h"
#include "canvas/container/RotateGesture.h"
#include "canvas/tools/Tool.h"

#include <optional>
#include <variant>

namespace tallowby {

/// Selects, edits, moves, resizes and turns what is there. On empty canvas a drag moves the paper; with Shift it draws
/// a rectangle that selects what it touches. With Alt or Control a drag of a block moves a copy of
/// it.
class SelectTool final : public Tool {
public:
    using Tool::Tool;

    void press(const PointerInput &input) override;
    void move(const PointerInput &input) override;
    void release(const PointerInput &input) override;
    void cancel() override;
    bool interrupt() override;
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &input) const override;

    /// The handles of the one selected block; none while it is edited or several are selected.
    [[nodiscard]] static std::optional<HandleLayout> handles(ToolContext &context);

private:
    /// Not moved far enough yet to be more than a click.
    struct Press {
        /// Null for empty canvas.
        BlockPtr block;
        /// Of the selected block.
        std::optional<BlockHandle> handle;
    };
    struct Pan {
        QPointF last;
    };
    struct Marquee {
        std::vector<BlockPtr> selectedBefore;
    };
    struct Move {
        MoveGesture gesture;
        /// Of copies that are being moved, what they were made of.
        std::vector<BlockPtr> originals;
    };
    struct Resize {
        ResizeGesture gesture;
        BlockHandle handle;
    };
    struct Rotate {
        RotateGesture gesture;
    };
    /// A drag that means nothing: on a block that is being edited.
    struct Nothing {};
    using State = std::variant<std::monostate, Press, Pan, Marquee, Move, Resize, Rotate, Nothing>;

    [[nodiscard]] bool isDrag(const Press &press, const PointerInput &input) const;
    [[nodiscard]] QPointF translation(const PointerInput &input) const { return input.canvas - m_start.canvas; }
    [[nodiscard]] State stateOfDrag(const Press &press, const PointerInput &input);
    [[nodiscard]] State pullOf(BlockHandle handle) const;
    [[nodiscard]] State moveOf(const BlockPtr &block, const PointerInput &input);
    void follow(const PointerInput &input);
    void click(const BlockPtr &block);
    [[nodiscard]] bool isOnlySelection(const BlockPtr &block) const;

    State m_state;
    PointerInput m_start;
    PointerInput m_last;
};

} // namespace tallowby
