#include "canvas/tools/GestureDriver.h"

namespace tallowby::test {

GestureDriver::GestureDriver() {
    view.setSize({800, 600});
    model.updateVisibleBlocks(view.visibleRect(), view.scale());
}

BlockPtr GestureDriver::add(BlockType type, const QRectF &frame) {
    auto block = std::make_shared<Block>(QUuid(), type, frame);
    block->setZIndex(qint64(model.blocks().size()));
    storage.insert(block);
    model.refreshBlocks();
    return block;
}

PointerInput GestureDriver::inputAt(QPointF fromMiddle) const {
    const QPointF screen = view.center() + fromMiddle;
    return {screen, view.toCanvas(screen), m_modifiers, 1};
}

GestureDriver &GestureDriver::press(QPointF at, Qt::KeyboardModifiers modifiers) {
    m_at = at;
    m_modifiers = modifiers;
    tools.press(inputAt(at));
    return *this;
}

GestureDriver &GestureDriver::move(QPointF to) {
    for (const double way : {0.3, 0.7, 1.0}) {
        tools.move(inputAt(m_at + way * (to - m_at)));
    }
    m_at = to;
    return *this;
}

GestureDriver &GestureDriver::release() {
    tools.release(inputAt(m_at));
    return *this;
}

GestureDriver &GestureDriver::click(QPointF at, Qt::KeyboardModifiers modifiers) {
    return press(at, modifiers).release();
}

GestureDriver &GestureDriver::drag(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers) {
    return press(from, modifiers).move(to).release();
}

Qt::CursorShape GestureDriver::cursorAt(QPointF at) {
    return tools.cursor(inputAt(at));
}

QPointF GestureDriver::handle(BlockHandle handle) {
    return SelectTool::handles(*this).value().middleOf(handle) - view.center();
}

bool GestureDriver::isEditable(const Block &block) const {
    return block.blockType() == BlockType::text || block.blockType() == BlockType::code;
}

bool GestureDriver::opensAtFirstClick(const Block &block) const {
    return block.blockType() == BlockType::text;
}

void GestureDriver::showDrag(const std::vector<BlockPtr> &blocks, QPointF dragOffset) {
    dragOffsets.clear();
    for (const BlockPtr &block : blocks) {
        dragOffsets.emplace(block.get(), dragOffset);
    }
}

void GestureDriver::edit(const BlockPtr &block, QPointF) {
    model.beginEditing(block);
}

} // namespace tallowby::test
