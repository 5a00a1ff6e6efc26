#pragma once

#include "canvas/model/BlockKindRegistry.h"
#include "canvas/model/CanvasViewModel.h"
#include "canvas/overlay/menu/MenuEntriesModel.h"

namespace tallowby {

/// What can be put on empty canvas: every kind of block, every shape, and what lies on the pasteboard.
class AddContentMenuItems {
public:
    /// Everything goes to `cursorPos`, in canvas points. `pickImage` lets the person choose an image for there.
    AddContentMenuItems(CanvasViewModel &model, const BlockKindRegistry &kinds, QPointF cursorPos,
                        std::function<void(QPointF)> pickImage);

    [[nodiscard]] std::vector<MenuEntry> entries() const;

private:
    [[nodiscard]] MenuEntry kind(BlockType type) const;
    [[nodiscard]] MenuEntry image() const;
    [[nodiscard]] MenuEntry shapes() const;
    [[nodiscard]] MenuEntry icon() const;
    [[nodiscard]] MenuEntry paste() const;

    CanvasViewModel &m_model;
    const BlockKindRegistry &m_kinds;
    QPointF m_cursorPos;
    std::function<void(QPointF)> m_pickImage;
};

} // namespace tallowby
