#include "blocks/CanvasDriver.h"
#include "canvas/overlay/help/KeyboardHelpOverlay.h"
#include "canvas/overlay/menu/ContextMenuView.h"
#include "canvas/overlay/minimap/MiniMapView.h"
#include "canvas/overlay/palette/ToolPaletteView.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

struct Overlays : testing::Test {
    template <typename Item>
    [[nodiscard]] Item &item() const {
        const QList<Item *> found = canvas.view->findChildren<Item *>();
        EXPECT_EQ(found.size(), 1);
        return *found.constFirst();
    }

    /// The visible button of that text below an item.
    [[nodiscard]] static QQuickItem *button(const QQuickItem &below, const QString &text) {
        for (QQuickItem *item : below.childItems()) {
            const bool isButton = item->isVisible() && item->property("checkable").isValid();
            if (isButton && item->property("text") == text) {
                return item;
            }
            if (QQuickItem *found = button(*item, text)) {
                return found;
            }
        }
        return nullptr;
    }

    void clickOn(const QString &text) {
        canvas.settle();
        QQuickItem *target = button(*canvas.view, text);
        ASSERT_NE(target, nullptr) << qPrintable(text);
        canvas.click(target->mapToScene(target->boundingRect().center()));
    }

    void openMenu(QPointF at, Block *block = nullptr) {
        canvas.model.setRightClickCursorPos(canvas.view->viewport().toCanvas(at));
        Q_EMIT canvas.view->contextMenuRequested(at, block);
        canvas.settle();
    }

    test::CanvasDriver canvas;
};

TEST_F(Overlays, ThePaletteShowsAndSetsTheTool) {
    using Kind = CanvasTool::Kind;
    const auto &palette = item<ToolPaletteView>();
    EXPECT_EQ(palette.activeTool(), 0);
    for (const auto &[name, kind] :
         std::initializer_list<std::pair<QString, Kind>>{{QStringLiteral("Hand"), Kind::hand},
                                                         {QStringLiteral("Eraser"), Kind::eraser},
                                                         {QStringLiteral("Sticky note"), Kind::stickyNote},
                                                         {QStringLiteral("Pencil"), Kind::pencil}}) {
        clickOn(name);
        EXPECT_EQ(canvas.model.activeTool(), CanvasTool(kind)) << qPrintable(name);
        EXPECT_EQ(canvas.focus(), canvas.view.get()) << "a click does not take the keyboard";
    }
    clickOn(QStringLiteral("Red"));
    clickOn(QStringLiteral("6 points wide"));
    EXPECT_EQ(canvas.model.pencilColor(), QStringLiteral("#D64541"));
    EXPECT_EQ(canvas.model.pencilWidth(), 6);

    clickOn(QStringLiteral("Shape"));
    EXPECT_EQ(button(*canvas.view, QStringLiteral("Red")), nullptr);
    clickOn(QStringLiteral("Diamond"));
    EXPECT_EQ(canvas.model.activeTool(), CanvasTool::shape(ShapeType::diamond));
    clickOn(QStringLiteral("Select"));
    clickOn(QStringLiteral("Shape"));
    EXPECT_EQ(canvas.model.activeTool(), CanvasTool::shape(ShapeType::diamond)) << "the shape of last time";

    clickOn(QStringLiteral("Keep tool active after use"));
    EXPECT_TRUE(canvas.model.toolLocked());
    canvas.model.setActiveTool(Kind::voiceNote);
    EXPECT_EQ(palette.activeTool(), 8) << "the digit 9";
}

TEST_F(Overlays, ThePaletteKeepsOutOfTheWay) {
    auto &palette = item<ToolPaletteView>();
    const auto moveTo = [this](QPointF at) {
        QMouseEvent move(QEvent::MouseMove, at, at, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&canvas.window, &move);
    };
    palette.setIsGestureRunning(true);
    EXPECT_FALSE(palette.isFaint()) << "a pan draws nothing";
    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    EXPECT_TRUE(palette.isFaint());
    moveTo(palette.mapToScene(palette.boundingRect().center()) - QPointF(0, 40));
    EXPECT_FALSE(palette.isFaint());
    moveTo({10, 10});
    EXPECT_TRUE(palette.isFaint());
    palette.setIsGestureRunning(false);
    EXPECT_FALSE(palette.isFaint());

    canvas.model.setActiveTool(CanvasTool::Kind::select);
    canvas.type(QStringLiteral("a"));
    EXPECT_FALSE(palette.property("isWanted").toBool()) << "while a block is edited";
}

TEST_F(Overlays, TheCanvasMenuPutsABlockWhereItOpened) {
    const auto &menu = item<ContextMenuView>();
    openMenu({500, 350});
    ASSERT_NE(menu.entries(), nullptr);
    EXPECT_TRUE(menu.hasActiveFocus());
    canvas.type(QStringLiteral("d"));
    EXPECT_TRUE(canvas.model.isEmpty()) << "letters are the menu's";
    canvas.press(Qt::Key_Return);
    ASSERT_EQ(canvas.model.blocks().size(), 1U);
    EXPECT_EQ(canvas.model.blocks().front()->blockType(), BlockType::divider);
    EXPECT_EQ(canvas.model.blocks().front()->xPosition(), 100);
    EXPECT_EQ(menu.entries(), nullptr);
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(Overlays, ShapesOpenBesideTheirRowForKeysAndPointer) {
    auto &menu = item<ContextMenuView>();
    openMenu({100, 100});
    canvas.type(QStringLiteral("ss"));
    ASSERT_EQ(menu.entries()->currentEntry()->text, QStringLiteral("Shape"));
    EXPECT_EQ(menu.children(), nullptr);
    canvas.press(Qt::Key_Right);
    ASSERT_NE(menu.children(), nullptr);
    canvas.press(Qt::Key_Left);
    EXPECT_EQ(menu.children(), nullptr);
    canvas.press(Qt::Key_Return);
    canvas.press(Qt::Key_Down);
    canvas.press(Qt::Key_Return);
    ASSERT_EQ(canvas.model.blocks().size(), 1U);
    EXPECT_EQ(canvas.model.blocks().front()->shapeType(), ShapeType::circle);
    EXPECT_EQ(canvas.focus(), canvas.view.get());

    openMenu({100, 100});
    menu.hover(menu.entries(), 7, {150, 300});
    ASSERT_NE(menu.children(), nullptr);
    menu.hover(menu.entries(), 8, {190, 310});
    EXPECT_NE(menu.children(), nullptr) << "on its way to the right the pointer crosses the next row";
    menu.hover(menu.entries(), 8, {191, 320});
    EXPECT_EQ(menu.children(), nullptr);
    canvas.press(Qt::Key_Escape);
    EXPECT_EQ(menu.entries(), nullptr);
    EXPECT_EQ(canvas.focus(), canvas.view.get());
}

TEST_F(Overlays, TheBlockMenuActsOnTheSelection) {
    auto &menu = item<ContextMenuView>();
    const BlockPtr low = canvas.add(BlockType::divider, {-200, -100, 100, 80});
    const BlockPtr middle = canvas.add(BlockType::text, {0, -100, 100, 24}, QStringLiteral("note"));
    const BlockPtr top = canvas.add(BlockType::shape, {0, 50, 100, 80});
    const auto choose = [&](const QString &text) {
        const auto &entries = menu.entries()->entries();
        const auto found = std::ranges::find(entries, text, &MenuEntry::text);
        ASSERT_NE(found, entries.end()) << qPrintable(text);
        menu.choose(menu.entries(), int(found - entries.begin()));
    };
    openMenu({250, 250}, low.get());
    EXPECT_TRUE(low->isSelected());
    EXPECT_EQ(menu.entries()->entries().front().text, QStringLiteral("Bring to front")) << "a rule takes no typing";
    canvas.press(Qt::Key_Escape);

    canvas.model.toggleSelection(middle);
    openMenu({250, 250}, low.get());
    choose(QStringLiteral("Bring to front"));
    EXPECT_EQ(canvas.model.blocks(), (std::vector{top, low, middle})) << "in their order among each other";
    openMenu({250, 250}, middle.get());
    choose(QStringLiteral("Send to back"));
    EXPECT_EQ(canvas.model.blocks(), (std::vector{low, middle, top}));
    openMenu({250, 250}, low.get());
    choose(QStringLiteral("Delete"));
    EXPECT_EQ(canvas.model.blocks(), std::vector{top});

    canvas.add(BlockType::text, {0, -100, 100, 24}, QStringLiteral("note"));
    openMenu({450, 210}, canvas.model.blocks().back().get());
    canvas.press(Qt::Key_Down);
    canvas.press(Qt::Key_Return);
    canvas.settle();
    EXPECT_TRUE(canvas.isEditorFocused()) << "what opens an editor leaves it the keyboard";
}

TEST_F(Overlays, APressBesideTheMenuClosesItAndSoDoesLeaving) {
    const auto &menu = item<ContextMenuView>();
    openMenu({100, 100});
    canvas.click({700, 300});
    EXPECT_EQ(menu.entries(), nullptr);
    openMenu({100, 100});
    canvas.view->setVisible(false);
    EXPECT_EQ(menu.entries(), nullptr);
    canvas.view->setVisible(true);
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(Overlays, TheMiniMapIsThereForWhatIsOutOfSightAndLeadsThere) {
    auto &map = item<MiniMapView>();
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.scheduler.advance(std::chrono::seconds(1));
    EXPECT_FALSE(map.isNeeded());
    canvas.add(BlockType::table, {3'000, 0, 200, 100});
    canvas.scheduler.advance(std::chrono::seconds(1));
    ASSERT_TRUE(map.isNeeded());
    map.parentItem()->setOpacity(1);

    // A click near the right end of the map shows the far block.
    const QRectF before = map.viewportOutline();
    const QPointF far = map.mapToScene({180, 65});
    canvas.click(far);
    EXPECT_TRUE(canvas.view->viewport().visibleRect().intersects(QRectF(3'000, 0, 200, 100)));
    EXPECT_GT(map.viewportOutline().x(), before.x());

    // Dragging by the outline moves it with the pointer, from where it was taken.
    canvas.view->jumpTo({0, 0});
    const QPointF grip = map.viewportOutline().topLeft() + QPointF(2, 2);
    const MiniMapGeometry geometry{.blocks = {0, 0, 3'200, 100},
                                   .offset = {},
                                   .viewportSize = {800, 600},
                                   .mapSize = map.size(),
                                   .padding = map.padding()};
    const QPointF moved = geometry.toCanvas({40, 0}) - geometry.toCanvas({0, 0});
    canvas.drag(map.mapToScene(grip), map.mapToScene(grip + QPointF(40, 0)));
    EXPECT_LT((canvas.view->viewport().offset() + moved).manhattanLength(), 1.5);
}

TEST_F(Overlays, TheHelpNamesEveryKeyOnceAndGoesWithAClickBeside) {
    auto &help = item<KeyboardHelpOverlay>();
    const QVariantList shortcuts = KeyboardHelpOverlay::shortcuts();
    ASSERT_EQ(shortcuts.size(), 12);
    QSet<QString> keys;
    for (const QVariant &shortcut : shortcuts) {
        keys << shortcut.value<HelpShortcut>().key;
    }
    EXPECT_EQ(keys.size(), 12);
    EXPECT_EQ(shortcuts.at(6).value<HelpShortcut>().desc, QStringLiteral("Nudge selected (Shift = ×10)"));

    EXPECT_FALSE(help.isVisible());
    canvas.press(Qt::Key_Question, Qt::ShiftModifier, QStringLiteral("?"));
    EXPECT_TRUE(help.isShown());
    help.setOpacity(1);
    canvas.click({20, 300});
    EXPECT_FALSE(canvas.view->isHelpVisible());
    EXPECT_TRUE(canvas.model.isEmpty());
}

} // namespace

} // namespace tallowby
