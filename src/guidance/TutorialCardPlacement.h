#pragma once

#include "guidance/CanvasTutorialModel.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace tallowby {

/// What a card of the tutorial is laid out by, in points of the view.
struct TutorialCardSurroundings {
    QSizeF view;
    QSizeF card;
    /// Where the person is at work; empty for nowhere.
    QRectF keepClear;
    /// Where the mini map stands, or will.
    QRectF miniMap;
};

/// Where the card of that step stands, its upper left corner: in front at first, then in a corner beside what is being
/// tried, at last over the mini map, to which it points.
[[nodiscard]] QPointF tutorialCardPosition(CanvasTutorialStep step, const TutorialCardSurroundings &around);

} // namespace tallowby
