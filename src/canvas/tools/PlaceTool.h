#pragma once

#include "canvas/tools/Tool.h"

namespace tallowby {

/// Puts a new block of one kind where it is clicked, open for editing.
class PlaceTool final : public Tool {
public:
    PlaceTool(ToolContext &context, BlockType type)
        : Tool(context)
        , m_type(type) {}

    void press(const PointerInput &input) override { m_place = input.canvas; }
    void move(const PointerInput &) override {}
    void release(const PointerInput &input) override;
    void cancel() override {}
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &input) const override;

private:
    BlockType m_type;
    QPointF m_place;
};

} // namespace tallowby
