#pragma once

#include "canvas/tools/Tool.h"

namespace tallowby {

/// Deletes the topmost block where it is pressed.
class EraserTool final : public Tool {
public:
    using Tool::Tool;

    void press(const PointerInput &input) override;
    void move(const PointerInput &) override {}
    void release(const PointerInput &) override {}
    void cancel() override;
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &input) const override;

private:
    bool m_hasErased = false;
};

} // namespace tallowby
