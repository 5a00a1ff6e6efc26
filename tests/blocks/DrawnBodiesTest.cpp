#include "blocks/CanvasDriver.h"
#include "blocks/shape/ShapeBlockContent.h"
#include "blocks/shape/ShapeOutlines.h"
#include "canvas/drawing/LiveSketchOverlay.h"
#include "canvas/drawing/PathDrawingItem.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QTransform>

namespace tallowby {

namespace {

using namespace std::chrono_literals;

struct DrawnBodies : testing::Test {
    BlockPtr addShape(const QString &type, const QRectF &frame, const QByteArray &more = {}) {
        const BlockPtr block = canvas.add(BlockType::shape, frame);
        block->setContent("{\"shapeType\":\"" + type.toUtf8() +
                          "\",\"fillColor\":\"#FF0000\",\"strokeColor\":\"#0000FF\"" + more + "}");
        return block;
    }

    BlockPtr addSketch(const std::vector<SketchPoint> &points, const QString &color, double width) {
        const BlockPtr block = canvas.add(BlockType::sketch, {0, 0, 60, 60});
        block->setSketchStrokes({{.points = points, .color = color, .width = width}});
        return block;
    }

    PathDrawingItem *drawingOf(const BlockPtr &block) {
        for (QQuickItem *child : canvas.containers().at(block.get())->body()->childItems()) {
            if (auto *item = qobject_cast<PathDrawingItem *>(child)) {
                return item;
            }
        }
        return nullptr;
    }

    /// What is on the screen, the paths themselves and then their pictures, which have to look the same.
    QColor pixel(const BlockPtr &block, QPoint at) {
        canvas.settle();
        EXPECT_TRUE(test::waitUntil([this, &block] { return drawingOf(block)->picture() != nullptr; }));
        return canvas.window.grabWindow().pixelColor(at);
    }

    test::CanvasDriver canvas;
};

/// Whether an outline of 100 × 60 goes through the point or, filled, holds it.
bool isInked(ShapeType shape, QPointF at) {
    QPainterPathStroker pen;
    pen.setWidth(2);
    return pen.createStroke(shapeOutline(shape, {0, 0, 100, 60})).contains(at);
}

int distance(const QColor &one, const QColor &other) {
    return std::max({std::abs(one.red() - other.red()), std::abs(one.green() - other.green()),
                     std::abs(one.blue() - other.blue())});
}

} // namespace

TEST(ShapeOutlines, GoThroughTheirCorners) {
    struct Case {
        ShapeType shape;
        std::vector<QPointF> on;
        std::vector<QPointF> off;
        QPointF inside;
    };
    const Case cases[] = {
        {ShapeType::rectangle, {{0, 30}, {50, 0}, {100, 30}, {50, 60}}, {{0, 0}, {100, 60}}, {50, 30}},
        {ShapeType::circle, {{0, 30}, {50, 0}, {100, 30}, {50, 60}}, {{8, 8}, {92, 52}}, {50, 30}},
        {ShapeType::diamond, {{50, 0}, {100, 30}, {50, 60}, {0, 30}, {25, 15}}, {{10, 5}}, {50, 30}},
        {ShapeType::triangle, {{50, 0}, {100, 60}, {0, 60}, {25, 30}}, {{10, 10}}, {50, 40}},
        {ShapeType::line, {{0, 30}, {50, 30}, {99, 30}}, {{85, 20}}, {}},
        {ShapeType::arrow, {{0, 30}, {99, 30}, {85.5, 20}, {85.5, 40}}, {{15, 20}}, {}},
        {ShapeType::speechBubble, {{0, 20}, {100, 20}, {50, 48}, {22 + 4.8, 59.5}}, {{0, 59}, {60, 58}}, {27, 53}},
    };
    for (const Case &each : cases) {
        const char *name = rawValue(each.shape).data();
        for (const QPointF at : each.on) {
            EXPECT_TRUE(isInked(each.shape, at)) << name << " " << at.x() << " " << at.y();
        }
        for (const QPointF at : each.off) {
            EXPECT_FALSE(isInked(each.shape, at)) << name << " " << at.x() << " " << at.y();
        }
        EXPECT_EQ(isFilled(each.shape), !each.inside.isNull()) << name;
        if (isFilled(each.shape)) {
            EXPECT_TRUE(shapeOutline(each.shape, {0, 0, 100, 60}).contains(each.inside)) << name;
        }
        const QRectF bounds = shapeOutline(each.shape, {0, 0, 100, 60}).boundingRect();
        EXPECT_TRUE(bounds.left() > -0.01 && bounds.right() < 100.01) << name;
        EXPECT_TRUE(bounds.top() > -0.01 && bounds.bottom() < 60.01) << name;
    }
    EXPECT_EQ(SpeechBubbleShape::tailHeight({0, 0, 100, 100}), 16);
    EXPECT_EQ(SpeechBubbleShape::tailHeight({0, 0, 100, 50}), 10);
    EXPECT_EQ(SpeechBubbleShape::cornerRadius({0, 0, 30, 90}), 10);
    EXPECT_EQ(ShapeBlockContent::frameSize({20, 10}), QSizeF(60, 40));
    EXPECT_EQ(ShapeBlockContent::frameSize({61, 41}), QSizeF(61, 41));
}

TEST_F(DrawnBodies, AShapeIsATintWithAStrokeInBothColours) {
    const BlockPtr block = addShape(QStringLiteral("rectangle"), {-350, -250, 100, 80}, ",\"strokeWidth\":4");
    const QColor inside = pixel(block, {100, 90});
    const QColor ground = Theme::shared().canvas();
    const QColor tinted(int(ground.red() * 0.9 + 25.5), int(ground.green() * 0.9), int(ground.blue() * 0.9));
    EXPECT_LE(distance(inside, tinted), 3);
    EXPECT_LE(distance(pixel(block, {51, 90}), Qt::blue), 2);
    block->setContent("{\"shapeType\":\"line\",\"fillColor\":\"#FF0000\"}");
    EXPECT_GT(distance(pixel(block, {100, 80}), tinted), 8) << "a line has nothing to fill";
}

TEST_F(DrawnBodies, FlipsMirrorTheOutline) {
    const BlockPtr arrow = addShape(QStringLiteral("arrow"), {-350, -250, 100, 80}, ",\"strokeWidth\":4");
    const auto headIsAt = [this, &arrow](int x) { return distance(pixel(arrow, {x, 83}), Qt::blue) < 60; };
    EXPECT_TRUE(headIsAt(138));
    EXPECT_FALSE(headIsAt(62));
    arrow->setContentField(QStringLiteral("flipHorizontal"), AnyCodable(true));
    EXPECT_FALSE(headIsAt(138));
    EXPECT_TRUE(headIsAt(62));
    arrow->setContentField(QStringLiteral("flipHorizontal"), AnyCodable(false));
    EXPECT_TRUE(headIsAt(138));
    arrow->setContent(
        "{\"shapeType\":\"triangle\",\"flipVertical\":true,\"strokeColor\":\"#0000FF\",\"strokeWidth\":4}");
    EXPECT_LE(distance(pixel(arrow, {60, 51}), Qt::blue), 2) << "the base is on top now";
}

TEST_F(DrawnBodies, AStrokeLiesOnItsPointsAndGoesWithItsBlock) {
    const BlockPtr block = addSketch({{-300, -200, 1}, {-250, -200, 1}, {-200, -200, 1}}, QStringLiteral("#C8372D"), 6);
    EXPECT_LE(distance(pixel(block, {150, 100}), QColor(0xC8372D)), 2);
    EXPECT_GT(distance(pixel(block, {150, 110}), QColor(0xC8372D)), 50);
    block->setXPosition(block->xPosition() + 20);
    block->setYPosition(block->yPosition() + 10);
    block->shiftSketchPoints(20, 10);
    EXPECT_LE(distance(pixel(block, {150, 110}), QColor(0xC8372D)), 2);
}

TEST_F(DrawnBodies, OnlyASettledZoomMakesNewPictures) {
    const BlockPtr block = addSketch({{-30, -20, 1}, {25, 10, 1}, {20, -20, 1}}, QStringLiteral("#C8372D"), 6);
    canvas.settle();
    ASSERT_TRUE(test::waitUntil([this, &block] { return drawingOf(block)->picture() != nullptr; }));
    const auto first = drawingOf(block)->picture();
    canvas.wheel({400, 300}, {0, 240});
    canvas.settle();
    canvas.wheel({400, 300}, {0, 240}, Qt::ControlModifier);
    canvas.settle();
    EXPECT_EQ(drawingOf(block)->picture(), first) << "a pan and a zoom under way show what there is";
    canvas.scheduler.advance(1s);
    EXPECT_TRUE(test::waitUntil([this, &block, &first] { return drawingOf(block)->picture() != first; }));
    EXPECT_EQ(drawingOf(block)->picture()->place().scale, canvas.view->zoom());
    EXPECT_EQ(canvas.scheduler.pendingCalls(), 0);
}

TEST_F(DrawnBodies, ALabelIsTypedIntoTheMiddleOfItsShape) {
    const BlockPtr block = addShape(QStringLiteral("circle"), {-100, -60, 200, 120});
    canvas.model.beginEditing(block);
    canvas.settle();
    ASSERT_TRUE(canvas.isEditorFocused());
    canvas.type(QStringLiteral("label"));
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("label"));
    EXPECT_EQ(QSizeF(block->width(), block->height()), QSizeF(200, 120)) << "a label leaves the size alone";
    const QRectF editor = canvas.focus()->mapRectToScene({{0, 0}, canvas.focus()->size()});
    EXPECT_NEAR(editor.center().x(), 400, 1);
    EXPECT_NEAR(editor.center().y(), 300, 1.5);
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
}

TEST_F(DrawnBodies, TheLiveStrokeKeepsWhatIsFrozen) {
    LiveSketchState state;
    LiveSketchOverlay overlay(canvas.view.get());
    overlay.setColor(QStringLiteral("#C8372D"));
    overlay.setStrokeWidth(6);
    overlay.setOrigin(canvas.view->origin());
    overlay.setState(&state);
    for (int i = 0; i < 700; ++i) {
        state.append(-350 + i, 100, 1);
        canvas.settle();
    }
    const QImage drawn = canvas.window.grabWindow();
    for (int x = 52; x < 748; ++x) {
        ASSERT_LE(distance(drawn.pixelColor(x, 400), QColor(0xC8372D)), 2) << x;
    }
    state.reset();
    canvas.settle();
    EXPECT_GT(distance(canvas.window.grabWindow().pixelColor(400, 400), QColor(0xC8372D)), 50);
}

} // namespace tallowby
