#include "canvas/overlay/menu/ContextMenuView.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

TEST(MenuEntries, TheCurrentRowWalksAroundAndJumpsToLetters) {
    MenuEntriesModel menu({{.text = QStringLiteral("Copy"), .symbol = {}, .startsGroup = true},
                           {.text = QStringLiteral("Cut"), .symbol = {}},
                           {.text = QStringLiteral("Delete"), .symbol = {}}},
                          nullptr);
    EXPECT_EQ(menu.currentEntry(), nullptr);
    menu.moveCurrent(-1);
    EXPECT_EQ(menu.current(), 2) << "up from nowhere";
    menu.moveCurrent(1);
    EXPECT_EQ(menu.current(), 0);
    for (const auto &[letter, row] : std::initializer_list<std::pair<QString, int>>{
             {QStringLiteral("c"), 1}, {QStringLiteral("C"), 0}, {QStringLiteral("d"), 2}, {QStringLiteral("x"), 2}}) {
        menu.jumpTo(letter);
        EXPECT_EQ(menu.current(), row) << qPrintable(letter);
    }
    menu.setCurrent(7);
    EXPECT_EQ(menu.current(), -1);
    EXPECT_FALSE(menu.data(menu.index(0), MenuEntriesModel::StartsGroupRole).toBool()) << "nothing above to part from";

    MenuEntriesModel none({}, nullptr);
    none.moveCurrent(1);
    none.jumpTo(QStringLiteral("a"));
    EXPECT_EQ(none.current(), -1);
}

TEST(ContextMenu, OpensWhereThereIsRoomAndNeverOutside) {
    const QSizeF room(900, 600);
    const QSizeF menu(200, 400);
    struct Case {
        QRectF aside;
        QPointF corner;
    };
    for (const Case &c : {Case{{100, 50, 0, 0}, {100, 50}},
                          // At the right and the lower edge it opens to the other side.
                          Case{{850, 50, 0, 0}, {650, 50}}, Case{{100, 500, 0, 0}, {100, 100}},
                          // Neither side has room: it moves as far as it has to.
                          Case{{100, 300, 0, 0}, {100, 192}}, Case{{-20, -20, 0, 0}, {8, 8}},
                          // Children open beside their row, on either side.
                          Case{{100, 50, 190, 28}, {290, 50}}, Case{{650, 50, 190, 28}, {450, 50}},
                          Case{{650, 560, 190, 28}, {450, 188}}}) {
        EXPECT_EQ(ContextMenuView::placed(menu, c.aside, room), c.corner) << c.aside.x() << "," << c.aside.y();
    }
    EXPECT_EQ(ContextMenuView::placed({200, 900}, {100, 300, 0, 0}, room), QPointF(100, 8)) << "the top can be reached";
}

} // namespace

} // namespace tallowby
