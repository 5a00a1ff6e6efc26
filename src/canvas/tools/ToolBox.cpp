#include "canvas/tools/ToolBox.h"

#include "canvas/model/CanvasViewModel.h"

#include <utility>

namespace tallowby {

ToolBox::ToolBox(ToolContext &context)
    : m_context(context)
    , m_select(context)
    , m_hand(context)
    , m_pan(context)
    , m_pencil(context)
    , m_eraser(context)
    , m_shape(context)
    , m_image(context)
    , m_text(context, BlockType::text)
    , m_stickyNote(context, BlockType::stickyNote)
    , m_voiceNote(context, BlockType::voiceNote) {}

Tool &ToolBox::activeTool() {
    switch (m_context.viewModel().activeTool().kind()) {
    case CanvasTool::Kind::hand:
        return m_hand;
    case CanvasTool::Kind::pencil:
        return m_pencil;
    case CanvasTool::Kind::eraser:
        return m_eraser;
    case CanvasTool::Kind::shape:
        return m_shape;
    case CanvasTool::Kind::image:
        return m_image;
    case CanvasTool::Kind::text:
        return m_text;
    case CanvasTool::Kind::stickyNote:
        return m_stickyNote;
    case CanvasTool::Kind::voiceNote:
        return m_voiceNote;
    case CanvasTool::Kind::select:
        break;
    }
    return m_select;
}

void ToolBox::press(const PointerInput &input) {
    cancel();
    m_pressed = &activeTool();
    m_pressed->press(input);
}

void ToolBox::pressToPan(const PointerInput &input) {
    cancel();
    m_pressed = &m_pan;
    m_pressed->press(input);
}

void ToolBox::move(const PointerInput &input) {
    if (m_pressed) {
        m_pressed->move(input);
    }
}

void ToolBox::release(const PointerInput &input) {
    if (Tool *const used = std::exchange(m_pressed, nullptr)) {
        used->release(input);
        endUseOf(*used);
    }
}

void ToolBox::interrupt() {
    Tool *const used = std::exchange(m_pressed, nullptr);
    if (used && used->interrupt()) {
        endUseOf(*used);
    }
}

void ToolBox::endUseOf(const Tool &used) {
    if (&used != &m_pan && !m_context.viewModel().toolLocked()) {
        m_context.viewModel().setActiveTool(CanvasTool(CanvasTool::Kind::select));
    }
}

void ToolBox::cancel() {
    if (Tool *const pressed = std::exchange(m_pressed, nullptr)) {
        pressed->cancel();
    }
}

Qt::CursorShape ToolBox::cursor(const PointerInput &input) {
    return (m_pressed ? *m_pressed : activeTool()).cursor(input);
}

} // namespace tallowby
