#include "canvas/model/HistoryWatch.h"
#include "canvas/model/UndoGroup.h"
#include "model/AnyCodable.h"
#include "storage/DebouncedSaver.h"

#include <utility>

namespace tallowby {

namespace {

bool isBlank(const Block &block) {
    return block.rawTextOrEmpty().trimmed().isEmpty();
}

} // namespace

/// By value: the block may be named by one of the lists whose order changes here.
void CanvasViewModel::beginEditing(BlockPtr block) { // NOLINT(performance-unnecessary-value-param)
    if (m_focusedBlock == block) {
        return;
    }
    endEditing();
    selectOnly(block);
    if (block->rawTextOrEmpty().size() <= kLongestEditedText) {
        bringToFront(block);
        open(block, false);
        m_visibleBlocks.assign(blocksInViewport());
    }
}

void CanvasViewModel::endEditing() {
    const BlockPtr block = m_focusedBlock;
    if (!block) {
        return;
    }
    const QString textAtStart = std::exchange(m_textAtStart, {});
    setFocusedBlock(nullptr);
    if (!block->isLive()) {
        return;
    }
    // A text is nothing but its words; any other kind may be without.
    if (block->blockType() != BlockType::text || !isBlank(*block)) {
        if (block->rawTextOrEmpty() != textAtStart) {
            recordTyping(block, textAtStart);
        }
    } else if (m_isFocusedBlockNew) {
        const HistoryWatch watch(*this);
        m_history.forget(*block);
        softDelete({block});
    } else {
        // Undo brings back the block as it was, not an empty one.
        block->setRawText(textAtStart);
        softDelete({block});
        registerAction(DeleteAction{block});
    }
}

void CanvasViewModel::recordTyping(const BlockPtr &block, const QString &textBefore) {
    const UpdateTextAction typing{block, textBefore, block->rawTextOrEmpty()};
    if (m_isFocusedBlockNew && block->blockType() == BlockType::text) {
        // Without its first words a text would be left empty, or with the one letter that began it.
        const UndoGroup coming(*this, *block);
        registerAction(typing);
    } else {
        registerAction(typing);
    }
}

void CanvasViewModel::setText(Block &block, const QString &text) {
    if (block.rawTextOrEmpty() == text) {
        return;
    }
    block.setRawText(text);
    markEdited(block);
    m_saver.requestSave();
}

void CanvasViewModel::setContentField(Block &block, const QString &key, const AnyCodable &value) {
    const QByteArray before = block.content();
    block.setContentField(key, value);
    if (block.content() != before) {
        markEdited(block);
        m_saver.requestSave();
    }
}

void CanvasViewModel::open(const BlockPtr &block, bool isNew) {
    if (block->rawTextOrEmpty().size() > kLongestEditedText) {
        return;
    }
    m_textAtStart = block->rawTextOrEmpty();
    m_isFocusedBlockNew = isNew;
    setFocusedBlock(block);
}

void CanvasViewModel::setFocusedBlock(const BlockPtr &block) {
    if (m_focusedBlock == block) {
        return;
    }
    if (m_focusedBlock) {
        Q_EMIT editingAboutToEnd();
    }
    const BlockPtr previous = std::exchange(m_focusedBlock, block);
    Q_EMIT focusedBlockIdChanged();
    if (!previous || !block) {
        Q_EMIT isAnyBlockEditingChanged();
    }
}

} // namespace tallowby
