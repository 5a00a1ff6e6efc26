#include "blocks/CanvasDriver.h"
#include "blocks/toolbar/ShapeFormatToolbar.h"
#include "blocks/toolbar/TextFormatToolbar.h"
#include "canvas/overlay/toolbar/FormatToolbarView.h"
#include "canvas/overlay/toolbar/ToolbarPlacement.h"
#include "model/AnyCodable.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

struct Toolbars : testing::Test {
    [[nodiscard]] FormatToolbarView &bar() const {
        auto *found = canvas.view->findChild<FormatToolbarView *>();
        EXPECT_NE(found, nullptr);
        return *found;
    }
    [[nodiscard]] QString barName() const {
        return bar().toolbar() ? QString::fromLatin1(bar().toolbar()->metaObject()->superClass()->className())
                               : QString();
    }

    /// The bar is worked out with the next frame, and comes in over several.
    void settle() {
        canvas.settle();
        (void) canvas.window.grabWindow();
        bar().setOpacity(1);
        (void) canvas.window.grabWindow();
        canvas.settle();
    }

    void select(const std::vector<BlockPtr> &blocks) {
        canvas.model.select(blocks);
        settle();
    }

    [[nodiscard]] static QQuickItem *button(const QQuickItem &below, const QString &text) {
        for (QQuickItem *item : below.childItems()) {
            if (item->property("checkable").isValid() && item->property("text") == text) {
                return item;
            }
            if (QQuickItem *found = button(*item, text)) {
                return found;
            }
        }
        return nullptr;
    }

    void clickOn(const QString &text) {
        QQuickItem *target = bar().toolbar() ? button(*bar().toolbar(), text) : nullptr;
        ASSERT_NE(target, nullptr) << qPrintable(text);
        canvas.click(target->mapToScene(target->boundingRect().center()));
        settle();
    }

    test::CanvasDriver canvas;
};

TEST(ToolbarPlacement, AboveElseBelowElseInSightAndClearOfOthers) {
    constexpr QSizeF kBar(200, 36);
    constexpr QSizeF kView(800, 600);
    const QRectF palette(250, 540, 300, 44);
    struct Case {
        QRectF target;
        QPointF place;
    };
    const std::initializer_list<Case> cases{
        {{300, 200, 100, 50}, {250, 156}},   // above the middle
        {{300, 40, 100, 50}, {250, 98}},     // no room above
        {{300, 52, 100, 50}, {250, 8}},      // just room above
        {{-50, 200, 100, 50}, {8, 156}},     // the left edge
        {{780, 200, 100, 50}, {592, 156}},   // the right edge
        {{300, 580, 100, 50}, {250, 496}},   // would lie on the palette
        {{700, 580, 50, 50}, {592, 536}},    // beside the palette
        {{300, 20, 100, 500}, {250, 8}},     // below is the palette
        {{-100, -100, 1000, 900}, {300, 8}}, // fills the view
        {{300, -100, 100, 50}, {250, 8}},    // out of sight
    };
    for (const auto &[target, place] : cases) {
        EXPECT_EQ(ToolbarPlacement::placed(kBar, target, kView, {palette}), place)
            << target.x() << ' ' << target.y() << ' ' << target.height();
    }
    EXPECT_EQ(ToolbarPlacement::placed({1000, 36}, {300, 200, 100, 50}, kView, {}), QPointF(8, 156))
        << "wider than all";
}

TEST_F(Toolbars, TheSelectionSaysWhichOneThereIs) {
    const BlockPtr text = canvas.add(BlockType::text, {-300, 0, 100, 24}, QStringLiteral("a"));
    const BlockPtr shape = canvas.add(BlockType::shape, {-100, 0, 100, 80});
    const BlockPtr note = canvas.add(BlockType::stickyNote, {100, 0, 100, 100});
    const BlockPtr table = canvas.add(BlockType::table, {100, -200, 100, 100});
    struct Case {
        std::vector<BlockPtr> selected;
        const char *name;
    };
    for (const auto &[selected, name] : std::initializer_list<Case>{
             {{text}, "tallowby::TextFormatToolbar"},
             {{shape}, "tallowby::ShapeFormatToolbar"},
             {{note}, "tallowby::NoteFormatToolbar"},
             {{text, shape}, "tallowby::ColorFormatToolbar"},
             {{text, note}, ""},
             {{table}, ""},
             {{}, ""},
         }) {
        select(selected);
        EXPECT_EQ(barName(), QString::fromLatin1(name));
        EXPECT_EQ(bar().isShown(), *name != 0);
        EXPECT_EQ(bar().childItems().size(), *name != 0 ? 1 : 0) << "nothing is kept";
    }
    select({shape});
    canvas.model.setActiveTool(CanvasTool::Kind::hand);
    settle();
    EXPECT_FALSE(bar().isShown());
    canvas.model.setActiveTool(CanvasTool::Kind::select);
    canvas.down({350, 340});
    settle();
    EXPECT_FALSE(bar().isShown()) << "while a button is down";
    canvas.up();
    settle();
    EXPECT_TRUE(bar().isShown());
    Q_EMIT canvas.view->contextMenuRequested({350, 340}, shape.get());
    settle();
    EXPECT_FALSE(bar().isShown()) << "behind a menu";
}

TEST_F(Toolbars, TheWeightOfAStrokeStaysWithinItsBounds) {
    const BlockPtr thin = canvas.add(BlockType::shape, {-100, 0, 100, 80});
    const BlockPtr thick = canvas.add(BlockType::shape, {50, 0, 100, 80});
    thin->setContentField(QStringLiteral("strokeWidth"), 1.2);
    thick->setContentField(QStringLiteral("strokeWidth"), 12);
    thick->setContentField(QStringLiteral("other"), QStringLiteral("kept"));
    thin->setNeedsSync(false);
    thick->setNeedsSync(false);
    select({thin, thick});
    auto &bar = *qobject_cast<ShapeFormatToolbar *>(this->bar().toolbar());
    EXPECT_EQ(bar.weight(), QStringLiteral("–"));
    bar.changeStrokeWidth(0.5);
    EXPECT_EQ(thin->strokeWidth(), 1.7);
    EXPECT_EQ(thick->strokeWidth(), 12);
    EXPECT_TRUE(thin->needsSync());
    EXPECT_FALSE(thick->needsSync()) << "nothing has changed";
    for (int i = 0; i < 3; ++i) {
        bar.changeStrokeWidth(-0.5);
    }
    EXPECT_EQ(thin->strokeWidth(), 0.5);
    select({thin});
    EXPECT_EQ(bar.weight(), QStringLiteral("0.5"));
    EXPECT_FALSE(bar.canThin());

    clickOn(QStringLiteral("Thicker"));
    EXPECT_EQ(thin->strokeWidth(), 1.0);
    clickOn(QStringLiteral("Larger"));
    EXPECT_EQ(thin->fontSize(), 18) << "of the label";
    select({thin, thick});
    EXPECT_EQ(bar.fontSize(), QStringLiteral("–"));
    bar.chooseFill(2);
    bar.chooseColor(0);
    EXPECT_EQ(thick->fillColor(), QStringLiteral("#D64541"));
    EXPECT_EQ(thick->strokeColor(), QStringLiteral("#333333"));
    EXPECT_EQ(std::pair(bar.fill(), bar.color()), std::pair(2, 0));
    EXPECT_EQ(std::get<QString>(thick->contentField(QStringLiteral("other"))->value()), QStringLiteral("kept"));
}

TEST_F(Toolbars, ATextIsFormattedWhileItIsTyped) {
    canvas.pointAt({300, 300});
    canvas.type(QStringLiteral("no"));
    settle();
    const BlockPtr text = canvas.model.focusedBlock();
    ASSERT_NE(text, nullptr);
    const Timestamp before = text->updatedAt();
    clickOn(QStringLiteral("Bold"));
    clickOn(QStringLiteral("Larger"));
    clickOn(QStringLiteral("Blue"));
    EXPECT_TRUE(text->isBold());
    EXPECT_EQ(text->fontSize(), 18);
    EXPECT_EQ(text->textColor(), QStringLiteral("#2F6BEB"));
    EXPECT_GE(text->updatedAt(), before);
    EXPECT_TRUE(canvas.isEditorFocused());
    const QPointF place = bar().position();
    canvas.type(QStringLiteral("te"));
    canvas.press(Qt::Key_I, Qt::ControlModifier, QStringLiteral("\t"));
    canvas.press(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier, QStringLiteral("\x18"));
    EXPECT_TRUE(text->isItalic() && text->isStrikethrough());
    EXPECT_EQ(text->rawTextOrEmpty(), QStringLiteral("note"));
    settle();
    EXPECT_EQ(bar().x(), place.x()) << "it stays under the pointer while the text grows";

    // By keys alone, and back to the typing.
    canvas.press(Qt::Key_F6);
    EXPECT_TRUE(bar().hasActiveFocus());
    canvas.press(Qt::Key_Right);
    canvas.press(Qt::Key_Return);
    EXPECT_FALSE(text->isItalic());
    canvas.press(Qt::Key_Escape);
    EXPECT_TRUE(canvas.isEditorFocused());
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    EXPECT_EQ(canvas.focus(), canvas.view.get());

    // Of several texts, a style is on when all have it.
    const BlockPtr plain = canvas.add(BlockType::text, {0, 100, 100, 24}, QStringLiteral("b"));
    plain->setFontSize(96);
    select({text, plain});
    const auto *texts = qobject_cast<TextFormatToolbar *>(bar().toolbar());
    EXPECT_FALSE(texts->isBold());
    EXPECT_EQ(texts->fontSize(), QStringLiteral("–"));
    canvas.press(Qt::Key_B, Qt::ControlModifier, QStringLiteral("\x02"));
    EXPECT_TRUE(texts->isBold());
    clickOn(QStringLiteral("Bold"));
    EXPECT_FALSE(text->isBold() || plain->isBold());
    EXPECT_EQ(TextFormatToolbar::largerThan(17), 18);
    EXPECT_EQ(TextFormatToolbar::largerThan(400), 96);
    EXPECT_EQ(TextFormatToolbar::smallerThan(8), 8);
}

TEST_F(Toolbars, SketchesIconsAndNotesKeepWhatTheyAre) {
    const std::vector<SketchPoint> points{{.x = 0, .y = 0}, {.x = 50, .y = 40}, {.x = 90, .y = 10}};
    const BlockPtr sketch = canvas.model.beginSketch({0, 0});
    canvas.model.commitStroke(sketch, points, QStringLiteral("#333333"), 3);
    canvas.model.commitStroke(sketch, points, QStringLiteral("#D64541"), 6);
    const QSizeF frame(sketch->width(), sketch->height());
    select({sketch});
    clickOn(QStringLiteral("12 points wide"));
    clickOn(QStringLiteral("Green"));
    for (const SketchStroke &stroke : sketch->sketchStrokes()) {
        EXPECT_EQ(stroke.color, QStringLiteral("#27AE60"));
        EXPECT_EQ(stroke.width, 12);
        EXPECT_EQ(stroke.points.size(), points.size());
    }
    EXPECT_EQ(QSizeF(sketch->width(), sketch->height()), frame);

    const BlockPtr icon = canvas.model.spawnIcon({0, 0}, QStringLiteral("star"));
    canvas.model.endEditing();
    const QRectF before(icon->xPosition(), icon->yPosition(), icon->width(), icon->height());
    select({icon});
    clickOn(QStringLiteral("128 points in size"));
    EXPECT_EQ(QRectF(icon->xPosition(), icon->yPosition(), icon->width(), icon->height()),
              before.adjusted(-32, -32, 32, 32));
    canvas.model.undo();
    EXPECT_EQ(icon->width(), 64);

    const BlockPtr divider = canvas.add(BlockType::divider, {-200, -100, 100, 20});
    divider->setContent(R"({"kept":1})");
    divider->setNeedsSync(false);
    select({divider});
    clickOn(QStringLiteral("4 points thick"));
    EXPECT_EQ(divider->content(), QByteArrayLiteral(R"({"kept":1,"thickness":4})"));
    EXPECT_TRUE(divider->needsSync());

    const BlockPtr note = canvas.add(BlockType::stickyNote, {-200, 0, 100, 100});
    select({note});
    clickOn(QStringLiteral("Sky"));
    EXPECT_EQ(note->stickyColor(), QStringLiteral("sky"));
    EXPECT_EQ(std::get<QString>(note->contentField(QStringLiteral("stickyColor"))->value()), QStringLiteral("sky"));
}

} // namespace

} // namespace tallowby
