#include "guidance/TutorialCardPlacement.h"

#include <gtest/gtest.h>

namespace tallowby::test {

namespace {

constexpr QSizeF kCard{360, 230};

TutorialCardSurroundings around(QSizeF view, const QRectF &keepClear = {}) {
    return {view, kCard, keepClear, {view.width() - 216, view.height() - 146, 200, 130}};
}

QRectF frame(CanvasTutorialStep step, const TutorialCardSurroundings &surroundings) {
    return {tutorialCardPosition(step, surroundings), surroundings.card};
}

} // namespace

TEST(TutorialCardPlacement, NoCardLiesOverWhatIsBeingTried) {
    const QSizeF view(1440, 900);
    for (const auto step :
         {CanvasTutorialStep::welcome, CanvasTutorialStep::pointAndType, CanvasTutorialStep::rightClick}) {
        for (int x = 0; x < 1440; x += 40) {
            for (int y = 0; y < 900; y += 40) {
                const QRectF note(x, y, 300, 100);
                const QRectF card = frame(step, around(view, note));
                EXPECT_FALSE(card.intersects(note)) << int(step) << " at " << x << ' ' << y;
                EXPECT_TRUE(QRectF({}, view).contains(card)) << int(step) << " at " << x << ' ' << y;
            }
        }
    }
}

TEST(TutorialCardPlacement, TheLastStandsOverTheMiniMap) {
    const auto surroundings = around({1440, 900});
    const QRectF card = frame(CanvasTutorialStep::miniMap, surroundings);
    EXPECT_EQ(card.right(), surroundings.miniMap.right());
    EXPECT_LT(card.bottom(), surroundings.miniMap.top());
}

TEST(TutorialCardPlacement, InAViewThatIsTooSmallItsBeginningIsSeen) {
    for (int step = 0; step < kCanvasTutorialStepCount; ++step) {
        const QPointF position = tutorialCardPosition(CanvasTutorialStep(step), around({300, 200}, {0, 0, 300, 200}));
        EXPECT_EQ(position, QPointF(0, 0)) << step;
    }
}

} // namespace tallowby::test
