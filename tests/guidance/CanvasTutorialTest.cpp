#include "blocks/CanvasDriver.h"
#include "canvas/overlay/minimap/MiniMapView.h"
#include "guidance/CanvasTutorialOverlayView.h"
#include "platform/UserDefaults.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

void qml_register_types_Tallowby_Guidance();

namespace tallowby::test {

namespace {

const QString kHasSeen = QStringLiteral("tallowby.hasSeenCanvasTutorial");

/// A newcomer in front of an empty canvas.
class CanvasTutorial : public testing::Test {
protected:
    CanvasTutorial() {
        qml_register_types_Tallowby_Guidance();
        overlay = CanvasTutorialOverlayView::install(canvas.engine, *canvas.view, defaults);
        canvas.settle();
    }
    [[nodiscard]] CanvasTutorialStep step() const { return overlay->model()->step(); }
    [[nodiscard]] QRectF card() const { return {overlay->cardPosition(), overlay->cardSize()}; }
    /// The button that says so, if it can be seen.
    void pressButton(const QString &text) {
        static_cast<void>(canvas.window.grabWindow()); // All stands in its place.
        for (auto *item : overlay->findChildren<QQuickItem *>()) {
            if (item->isVisible() && item->property("text") == text &&
                item->metaObject()->indexOfSignal("clicked()") >= 0) {
                canvas.click(item->mapToScene(QPointF(item->width() / 2, item->height() / 2)));
                return;
            }
        }
        ADD_FAILURE() << "there is no button " << qPrintable(text);
    }

    TemporaryFolder folder;
    UserDefaults defaults{folder.file(QStringLiteral("Tallowby.conf"))};
    CanvasDriver canvas;
    CanvasTutorialOverlayView *overlay;
};

} // namespace

TEST_F(CanvasTutorial, IsWalkedByDoingWhatItSays) {
    EXPECT_TRUE(overlay->isActive());
    EXPECT_EQ(overlay->title(), QStringLiteral("Welcome to your canvas"));
    canvas.down({700, 500}, Qt::RightButton);
    canvas.up();
    canvas.press(Qt::Key_Escape); // The menu.
    EXPECT_EQ(step(), CanvasTutorialStep::welcome) << "only its own button goes on";
    EXPECT_TRUE(overlay->isActive()) << "Escape was for the menu";

    pressButton(QStringLiteral("Next"));
    EXPECT_EQ(step(), CanvasTutorialStep::pointAndType);
    canvas.pointAt({400, 300});
    canvas.type(QStringLiteral("ab"));
    EXPECT_EQ(step(), CanvasTutorialStep::rightClick);
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("ab")}) << "the cards leave the keyboard to the canvas";
    EXPECT_TRUE(canvas.isEditorFocused());
    canvas.press(Qt::Key_Escape);
    EXPECT_TRUE(overlay->isActive()) << "Escape was for the editor";
    canvas.pointAt({600, 450});
    canvas.type(QStringLiteral("c"));
    EXPECT_EQ(step(), CanvasTutorialStep::rightClick);

    canvas.down({600, 150}, Qt::RightButton);
    canvas.up();
    EXPECT_EQ(step(), CanvasTutorialStep::miniMap);
    canvas.press(Qt::Key_Escape);
    pressButton(QStringLiteral("Done"));
    EXPECT_FALSE(overlay->isActive());
    EXPECT_TRUE(defaults.boolean(kHasSeen));
}

TEST_F(CanvasTutorial, ShowMeBringsTheMiniMapAndMovesNoBlock) {
    for (int i = 0; i < 3; ++i) {
        canvas.press(Qt::Key_Return);
    }
    ASSERT_EQ(step(), CanvasTutorialStep::miniMap);
    auto &map = *canvas.view->findChild<MiniMapView *>();
    EXPECT_TRUE(map.isShown()) << "the card points at it";
    EXPECT_FALSE(overlay->canShowMiniMap()) << "there is nothing that it could lead to";
    const BlockPtr note = canvas.add(BlockType::text, {-100, -20, 200, 40}, QStringLiteral("a note"));
    ASSERT_TRUE(overlay->canShowMiniMap());
    const QPointF before = canvas.view->offset();
    canvas.settle();
    pressButton(QStringLiteral("Show Me"));
    EXPECT_TRUE(overlay->isMiniMapHighlighted());
    EXPECT_TRUE(waitUntil([&] { return canvas.view->offset() == before - QPointF(400, 0); }));
    EXPECT_EQ(note->xPosition(), -100);
    EXPECT_TRUE(overlay->isActive());
    canvas.view->jumpTo(before);
    overlay->finish();
    EXPECT_FALSE(map.isShown());
}

TEST_F(CanvasTutorial, EscapeSkipsForGood) {
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(overlay->isActive());
    EXPECT_TRUE(defaults.boolean(kHasSeen));
    overlay->model()->finish();

    CanvasTutorialModel later(defaults);
    EXPECT_FALSE(later.isActive());
    defaults.remove(kHasSeen);
    later.notifyPointAndTypeUsed();
    later.notifyRightClicked();
    later.finish();
    EXPECT_EQ(later.step(), CanvasTutorialStep::welcome);
    EXPECT_FALSE(defaults.contains(kHasSeen));
}

TEST_F(CanvasTutorial, StepsAsideFromANoteThatIsBegunUnderIt) {
    const QPointF under = card().center();
    canvas.pointAt(under);
    canvas.type(QStringLiteral("x"));
    EXPECT_EQ(step(), CanvasTutorialStep::welcome);
    EXPECT_FALSE(card().contains(under));
}

} // namespace tallowby::test
