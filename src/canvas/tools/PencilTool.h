#pragma once

#include "canvas/tools/Tool.h"

namespace tallowby {

/// Draws free-hand: each stroke becomes a sketch block of its own.
class PencilTool final : public Tool {
public:
    using Tool::Tool;

    void press(const PointerInput &input) override;
    void move(const PointerInput &input) override;
    void release(const PointerInput &input) override;
    void cancel() override;
    bool interrupt() override;
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &input) const override;

private:
    void append(const PointerInput &input);
    void keep();
    void clear();

    /// The active sketch block.
    BlockPtr m_block;
};

} // namespace tallowby
