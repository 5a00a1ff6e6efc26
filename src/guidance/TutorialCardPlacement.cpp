#include "guidance/TutorialCardPlacement.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

constexpr double kMargin = 24;
/// What the canvas keeps at its lower edge and in its upper right corner: tools, zoom, the way back.
constexpr double kLowerControls = 76;
constexpr double kUpperControls = 64;
/// From the welcome to the words in the middle of an empty canvas.
constexpr double kOverTheHint = 64;
constexpr double kArrow = 20;

/// In whole points, and inside the view where there is room.
QPointF within(const TutorialCardSurroundings &around, QPointF position) {
    const auto held = [](double value, double most) { return std::round(std::max(0.0, std::min(value, most))); };
    return {held(position.x(), around.view.width() - around.card.width()),
            held(position.y(), around.view.height() - around.card.height())};
}

QPointF inFront(const TutorialCardSurroundings &around) {
    return {(around.view.width() - around.card.width()) / 2,
            std::max(kMargin, around.view.height() / 2 - kOverTheHint - around.card.height())};
}

QPointF overMiniMap(const TutorialCardSurroundings &around) {
    return {around.miniMap.right() - around.card.width(), around.miniMap.top() - kArrow - around.card.height()};
}

} // namespace

QPointF tutorialCardPosition(CanvasTutorialStep step, const TutorialCardSurroundings &around) {
    const QPointF upperLeft(kMargin, kMargin);
    const QPointF upperRight(around.view.width() - around.card.width() - kMargin, kUpperControls);
    const QPointF lowerLeft(kMargin, around.view.height() - around.card.height() - kLowerControls);
    const bool isWelcome = step == CanvasTutorialStep::welcome;
    if (step == CanvasTutorialStep::miniMap) {
        return within(around, overMiniMap(around));
    }
    for (const QPointF &place : {isWelcome ? inFront(around) : upperLeft, upperLeft, upperRight, lowerLeft}) {
        const QPointF position = within(around, place);
        if (!QRectF(position, around.card).intersects(around.keepClear)) {
            return position;
        }
    }
    return within(around, upperLeft);
}

} // namespace tallowby
