#pragma once

#include "canvas/tools/Tool.h"

namespace tallowby {

/// Draws a shape from corner to corner.
class ShapeTool final : public Tool {
public:
    using Tool::Tool;

    void press(const PointerInput &input) override;
    void move(const PointerInput &input) override;
    void release(const PointerInput &input) override;
    void cancel() override;
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &) const override { return Qt::CrossCursor; }

private:
    BlockPtr m_block;
    QPointF m_start;
};

} // namespace tallowby
