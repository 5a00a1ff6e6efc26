#pragma once

#include "model/BlockType.h"

#include <QString>

#include <vector>

namespace tallowby {

/// A shape as menus and the palette offer it.
struct ShapeChoice {
    ShapeType type;
    /// For people, in their language.
    QString name;
    QString symbol;
};

/// All shapes, in the order in which they are offered.
[[nodiscard]] const std::vector<ShapeChoice> &shapeChoices();

} // namespace tallowby
