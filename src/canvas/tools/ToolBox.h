#pragma once

#include "canvas/tools/EraserTool.h"
#include "canvas/tools/HandTool.h"
#include "canvas/tools/ImageTool.h"
#include "canvas/tools/PencilTool.h"
#include "canvas/tools/PlaceTool.h"
#include "canvas/tools/SelectTool.h"
#include "canvas/tools/ShapeTool.h"

namespace tallowby {

/// All tools of a canvas, and which of them the pointer is driving. A tool that was used once gives way to the select
/// tool, unless it is locked.
class ToolBox {
public:
    explicit ToolBox(ToolContext &context);

    /// With the tool that the model says is active.
    void press(const PointerInput &input);
    /// With the hand, whatever the active tool is.
    void pressToPan(const PointerInput &input);
    /// These do nothing when nothing is pressed.
    void move(const PointerInput &input);
    void release(const PointerInput &input);
    void cancel();
    void interrupt();

    [[nodiscard]] bool isPressed() const { return m_pressed != nullptr; }
    [[nodiscard]] Qt::CursorShape cursor(const PointerInput &input);
    [[nodiscard]] Qt::CursorShape handCursor(const PointerInput &input) const { return m_pan.cursor(input); }

private:
    [[nodiscard]] Tool &activeTool();
    void endUseOf(const Tool &used);

    ToolContext &m_context;
    SelectTool m_select;
    HandTool m_hand;
    /// The hand of the middle button and of the blank key: no use of the hand tool.
    HandTool m_pan;
    PencilTool m_pencil;
    EraserTool m_eraser;
    ShapeTool m_shape;
    ImageTool m_image;
    PlaceTool m_text;
    PlaceTool m_stickyNote;
    PlaceTool m_voiceNote;
    Tool *m_pressed = nullptr;
};

} // namespace tallowby
