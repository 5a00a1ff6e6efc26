#pragma once

#include "canvas/tools/Tool.h"

#include <optional>

namespace tallowby {

/// Moves the paper, and nothing on it.
class HandTool final : public Tool {
public:
    using Tool::Tool;

    void press(const PointerInput &input) override;
    void move(const PointerInput &input) override;
    void release(const PointerInput &input) override;
    void cancel() override;
    bool interrupt() override;
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &input) const override;

private:
    struct Pan {
        QPointF start;
        QPointF last;
    };
    std::optional<Pan> m_pan;
};

} // namespace tallowby
