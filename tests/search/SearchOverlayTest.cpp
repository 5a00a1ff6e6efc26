#include "blocks/CanvasDriver.h"
#include "platform/AppEvents.h"
#include "platform/desktop/MotionPreference.h"
#include "search/SearchOverlayView.h"
#include "support/WaitUntil.h"
#include "sync/EmbeddingService.h"

#include <gtest/gtest.h>

void qml_register_types_Tallowby_Search();

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;

struct ReducedMotion final : MotionPreference {
    [[nodiscard]] bool prefersReducedMotion() const override { return true; }
};

/// A canvas with three notes, far from one another, and a person who looks for them.
class SearchOverlayTest : public testing::Test {
protected:
    SearchOverlayTest() {
        qml_register_types_Tallowby_Search();
        overlay = SearchOverlayView::install(canvas.engine, *canvas.view,
                                             {canvas.storage, embeddings, canvas.notifications, canvas.scheduler});
    }

    CanvasDriver canvas;
    EmbeddingService embeddings;
    SearchOverlayView *overlay;
    BlockPtr near = canvas.add(BlockType::text, {-50, -20, 100, 40}, QStringLiteral("the needle here"));
    BlockPtr table = canvas.add(BlockType::divider, {0, 100, 300, 20});
    BlockPtr far = canvas.add(BlockType::stickyNote, {40'000, -9'000, 200, 200}, QStringLiteral("another needle"));

    void open() { canvas.press(Qt::Key_F, Qt::ControlModifier); }
    void look(const QString &text) {
        canvas.type(text);
        canvas.scheduler.advance(500ms);
        canvas.settle();
    }
    [[nodiscard]] bool isCentred(const Block &block) const {
        const QRectF frame(block.xPosition(), block.yPosition(), block.width(), block.height());
        const QPointF off = canvas.view->viewport().toScreen(frame.center()) - QPointF(400, 300);
        return std::abs(off.x()) < 1 && std::abs(off.y()) < 1;
    }
};

} // namespace

TEST_F(SearchOverlayTest, IsUsedWithTheKeysAlone) {
    open();
    EXPECT_TRUE(overlay->isShown());
    ASSERT_TRUE(overlay->field());
    EXPECT_TRUE(overlay->field()->hasActiveFocus());
    look(u"needle"_qs);
    EXPECT_EQ(canvas.texts().size(), 3) << "what is typed into the search is no note";
    ASSERT_EQ(overlay->results()->count(), 2);
    EXPECT_EQ(overlay->currentIndex(), 0);
    canvas.press(Qt::Key_Down);
    EXPECT_EQ(overlay->currentIndex(), 1);
    canvas.press(Qt::Key_Down);
    EXPECT_EQ(overlay->currentIndex(), 1);
    canvas.press(Qt::Key_Up);
    canvas.press(Qt::Key_PageDown);
    EXPECT_EQ(overlay->currentIndex(), 1);
    canvas.press(Qt::Key_Return);
    EXPECT_FALSE(overlay->isShown());
    EXPECT_TRUE(far->isSelected());
    EXPECT_TRUE(canvas.view->hasActiveFocus());
    EXPECT_TRUE(waitUntil([this] { return isCentred(*far); }));
}

TEST_F(SearchOverlayTest, ReturnDoesNotWaitForThePause) {
    canvas.view->setMotionPreference(nullptr);
    const ReducedMotion reduced;
    canvas.view->setMotionPreference(&reduced);
    open();
    canvas.type(u"another"_qs);
    canvas.press(Qt::Key_Return);
    EXPECT_TRUE(far->isSelected());
    EXPECT_FALSE(near->isSelected());
    // Without movement it is there at once.
    EXPECT_TRUE(isCentred(*far));
    canvas.view->setMotionPreference(nullptr);
}

TEST_F(SearchOverlayTest, EscapeTheKeyAgainAndTheWayBackPutItAway) {
    open();
    look(u"needle"_qs);
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(overlay->isShown());
    EXPECT_TRUE(canvas.view->hasActiveFocus());
    // It comes back with what was looked for, ready to be typed over.
    open();
    EXPECT_EQ(overlay->viewModel()->searchText(), u"needle");
    EXPECT_EQ(overlay->results()->count(), 2);
    look(u"another"_qs);
    EXPECT_EQ(overlay->viewModel()->searchText(), u"another");
    EXPECT_EQ(overlay->results()->count(), 1);
    open();
    EXPECT_FALSE(overlay->isShown());
    open();
    canvas.notifications.post(events::flipClosed);
    EXPECT_FALSE(overlay->isShown());
    open();
    overlay->setOpacity(1);
    canvas.click({790, 590});
    EXPECT_FALSE(overlay->isShown());
    EXPECT_FALSE(near->isSelected());
}

TEST_F(SearchOverlayTest, NothingFoundIsSaidAndClearEmptiesTheField) {
    open();
    look(u"zebra"_qs);
    EXPECT_EQ(overlay->results()->count(), 0);
    EXPECT_EQ(overlay->notice(), u"Search failed. Please try again.");
    overlay->clear();
    EXPECT_EQ(overlay->viewModel()->searchText(), QString());
    EXPECT_EQ(overlay->notice(), QString());
    EXPECT_TRUE(overlay->field()->hasActiveFocus());
    canvas.press(Qt::Key_Return);
    EXPECT_TRUE(overlay->isShown());
}

TEST_F(SearchOverlayTest, TheKeyIsTheEditorsWhileABlockIsEdited) {
    canvas.model.beginEditing(near);
    canvas.settle();
    open();
    EXPECT_FALSE(overlay->isShown());
}

TEST_F(SearchOverlayTest, AJumpToSomewhereStrangeIsNone) {
    const QPointF before = canvas.view->offset();
    canvas.notifications.post(events::jumpToBlock);
    canvas.notifications.post(events::jumpToBlock, {{events::jumpXKey, qQNaN()}, {events::jumpYKey, 1.0}});
    EXPECT_EQ(canvas.view->offset(), before);
    // A block that only the backend has: its place is gone to, nothing is selected.
    canvas.notifications.post(
        events::jumpToBlock,
        {{events::jumpXKey, 500.0}, {events::jumpYKey, 200.0}, {events::jumpIdKey, QUuid::createUuid()}});
    EXPECT_TRUE(waitUntil([this] { return canvas.view->offset() == QPointF(-500, -200); }));
    EXPECT_EQ(canvas.model.selectionCount(), 0);
}

} // namespace tallowby::test
