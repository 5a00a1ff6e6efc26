#pragma once

#include "canvas/tools/Tool.h"

namespace tallowby {

/// Puts a picture that the user chooses where it is clicked.
class ImageTool final : public Tool {
public:
    using Tool::Tool;

    void press(const PointerInput &input) override { m_place = input.canvas; }
    void move(const PointerInput &) override {}
    void release(const PointerInput &) override { context().pickImage(m_place); }
    void cancel() override {}
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &) const override { return Qt::CrossCursor; }

private:
    QPointF m_place;
};

} // namespace tallowby
