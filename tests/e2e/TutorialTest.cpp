#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QFile>

namespace tallowby::test {

class Tutorial : public Desk {
protected:
    /// Where the cards stand beside what is tried, and where the last one stands.
    static constexpr QRect kCorner{24, 24, 360, 200};
    static constexpr QRect kOverMiniMap{904, 430, 360, 200};

    [[nodiscard]] bool becomesAccent(QRect area, bool isAccent) {
        return eventually([&] { return isAccentIn(area) == isAccent; });
    }
};

TEST_F(Tutorial, IsWalkedByTypingAndRightClickingAndNeverComesBack) {
    setKnowsCanvas(false);
    startProgram();
    openCanvas();
    pointer.moveTo(kScreenCentre + QPoint(0, 150));
    keyboard.tap(XK_Return); // What the welcome says has been read.
    ASSERT_TRUE(becomesAccent(kCorner, true));
    keyboard.type(u"mine");
    ASSERT_TRUE(notesBecome({QStringLiteral("mine")}));
    keyboard.tap(XK_Escape);
    keyboard.tap(XK_Escape); // Deselects; the card of the right click would go with a third.
    pointer.rightClick(kScreenCentre + QPoint(-100, -50));
    EXPECT_TRUE(becomesAccent(kCorner, false));
    EXPECT_TRUE(becomesAccent(kOverMiniMap, true));
    keyboard.tap(XK_Escape); // The menu.
    keyboard.tap(XK_Return); // The last card.
    EXPECT_TRUE(becomesAccent(kOverMiniMap, false));
    endProgram();

    startProgram();
    openCanvas();
    EXPECT_FALSE(isAccentIn(kCorner));
    EXPECT_FALSE(isAccentIn({460, 100, 360, 250})) << "no welcome";
}

} // namespace tallowby::test
