#include "canvas/overlay/menu/AddContentMenuItems.h"

#include "canvas/overlay/ShapeChoices.h"

#include <QCoreApplication>
#include <QKeySequence>

namespace tallowby {

namespace {

struct Names {
    Q_DECLARE_TR_FUNCTIONS(tallowby::AddContentMenuItems)
};

MenuEntry startingGroup(MenuEntry entry) {
    entry.startsGroup = true;
    return entry;
}

} // namespace

AddContentMenuItems::AddContentMenuItems(CanvasViewModel &model, const BlockKindRegistry &kinds, QPointF cursorPos,
                                         std::function<void(QPointF)> pickImage)
    : m_model(model)
    , m_kinds(kinds)
    , m_cursorPos(cursorPos)
    , m_pickImage(std::move(pickImage)) {}

std::vector<MenuEntry> AddContentMenuItems::entries() const {
    return {kind(BlockType::text),
            kind(BlockType::stickyNote),
            kind(BlockType::checklist),
            kind(BlockType::table),
            kind(BlockType::code),
            kind(BlockType::divider),
            startingGroup(image()),
            shapes(),
            icon(),
            kind(BlockType::sketch),
            startingGroup(kind(BlockType::voiceNote)),
            kind(BlockType::videoNote),
            startingGroup(kind(BlockType::automation)),
            startingGroup(paste())};
}

MenuEntry AddContentMenuItems::kind(BlockType type) const {
    const BlockKind &kind = m_kinds.kind(type);
    return {.text = kind.name, .symbol = kind.symbol, .action = [&model = m_model, at = m_cursorPos, type] {
                model.spawnBlock(at, type, {});
            }};
}

MenuEntry AddContentMenuItems::image() const {
    const BlockKind &kind = m_kinds.kind(BlockType::image);
    return {.text = kind.name + u'…', .symbol = kind.symbol, .action = [pick = m_pickImage, at = m_cursorPos] {
                pick(at);
            }};
}

MenuEntry AddContentMenuItems::shapes() const {
    const BlockKind &kind = m_kinds.kind(BlockType::shape);
    MenuEntry entry{.text = kind.name, .symbol = kind.symbol};
    for (const ShapeChoice &shape : shapeChoices()) {
        entry.children.push_back(
            {.text = shape.name,
             .symbol = shape.symbol,
             .action = [&model = m_model, at = m_cursorPos, type = shape.type] { model.spawnShape(at, type); }});
    }
    return entry;
}

MenuEntry AddContentMenuItems::icon() const {
    const BlockKind &kind = m_kinds.kind(BlockType::icon);
    return {.text = kind.name, .symbol = kind.symbol, .action = [&model = m_model, at = m_cursorPos] {
                model.spawnBlock(at, BlockType::icon);
            }};
}

MenuEntry AddContentMenuItems::paste() const {
    return {.text = Names::tr("Paste"),
            .symbol = QStringLiteral("doc.on.clipboard"),
            .shortcut = QKeySequence(Qt::CTRL | Qt::Key_V).toString(QKeySequence::NativeText),
            .action = [&model = m_model, at = m_cursorPos] { model.handlePaste(at); }};
}

} // namespace tallowby
