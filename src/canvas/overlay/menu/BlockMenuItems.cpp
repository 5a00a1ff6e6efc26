#include "canvas/overlay/menu/BlockMenuItems.h"

#include <QCoreApplication>
#include <QKeySequence>

#include <ranges>

namespace tallowby {

namespace {

struct Names {
    Q_DECLARE_TR_FUNCTIONS(tallowby::BlockMenuItems)
};

QString keys(QKeyCombination combination) {
    return QKeySequence(combination).toString(QKeySequence::NativeText);
}

/// A copy, since what is done to them may change the order of the canvas.
std::vector<BlockPtr> selectedInPaintOrder(const CanvasViewModel &model) {
    std::vector<BlockPtr> selected;
    std::ranges::copy_if(model.blocks(), std::back_inserter(selected), &Block::isSelected,
                         [](const BlockPtr &block) -> const Block & { return *block; });
    return selected;
}

void bringSelectedToFront(CanvasViewModel &model) {
    for (const BlockPtr &block : selectedInPaintOrder(model)) {
        model.bringToFront(block);
    }
}

void sendSelectedToBack(CanvasViewModel &model) {
    for (const BlockPtr &block : selectedInPaintOrder(model) | std::views::reverse) {
        model.sendToBack(block);
    }
}

void flipSelected(CanvasViewModel &model, void (CanvasViewModel::*flip)(const BlockPtr &)) {
    for (const BlockPtr &block : selectedInPaintOrder(model)) {
        (model.*flip)(block);
    }
}

} // namespace

BlockMenuItems::BlockMenuItems(CanvasViewModel &model, const BlockKindRegistry &kinds, const BlockPtr &block,
                               std::vector<MenuEntry> ownEntries)
    : m_model(model)
    , m_kinds(kinds)
    , m_block(block)
    , m_ownEntries(std::move(ownEntries)) {
    if (!block->isSelected()) {
        model.selectOnly(block);
    }
}

std::vector<MenuEntry> BlockMenuItems::entries() const {
    CanvasViewModel &model = m_model;
    std::vector<MenuEntry> entries;
    if (m_kinds.kind(m_block->blockType()).isEditable) {
        entries.push_back({.text = Names::tr("Edit"),
                           .symbol = QStringLiteral("square.and.pencil"),
                           .shortcut = keys(Qt::Key_Return),
                           .action = [&model, block = m_block] { model.beginEditing(block); }});
    }
    std::ranges::copy(m_ownEntries, std::back_inserter(entries));
    entries.push_back({.text = Names::tr("Bring to front"),
                       .symbol = QStringLiteral("square.stack.front"),
                       .startsGroup = !entries.empty(),
                       .action = [&model] { bringSelectedToFront(model); }});
    entries.push_back({.text = Names::tr("Send to back"),
                       .symbol = QStringLiteral("square.stack.back"),
                       .action = [&model] { sendSelectedToBack(model); }});
    entries.push_back({.text = Names::tr("Flip horizontal"),
                       .symbol = QStringLiteral("flip.horizontal"),
                       .startsGroup = true,
                       .action = [&model] { flipSelected(model, &CanvasViewModel::toggleFlipHorizontal); }});
    entries.push_back({.text = Names::tr("Flip vertical"),
                       .symbol = QStringLiteral("flip.vertical"),
                       .action = [&model] { flipSelected(model, &CanvasViewModel::toggleFlipVertical); }});
    entries.push_back({.text = Names::tr("Duplicate"),
                       .symbol = QStringLiteral("plus.square"),
                       .shortcut = keys(Qt::CTRL | Qt::Key_D),
                       .startsGroup = true,
                       .action = [&model] { model.duplicateSelected(); }});
    entries.push_back({.text = Names::tr("Copy"),
                       .symbol = QStringLiteral("doc.on.doc"),
                       .shortcut = keys(Qt::CTRL | Qt::Key_C),
                       .action = [&model] { model.copySelected(); }});
    entries.push_back({.text = Names::tr("Cut"),
                       .symbol = QStringLiteral("scissors"),
                       .shortcut = keys(Qt::CTRL | Qt::Key_X),
                       .action = [&model] { model.cutSelected(); }});
    entries.push_back({.text = Names::tr("Delete"),
                       .symbol = QStringLiteral("trash"),
                       .shortcut = keys(Qt::Key_Delete),
                       .startsGroup = true,
                       .action = [&model] { model.deleteSelected(); }});
    return entries;
}

} // namespace tallowby
