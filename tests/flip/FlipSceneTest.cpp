#include "FlipFixture.h"
#include "flip/CanvasWrapper.h"

#include <QPainter>
#include <QQmlComponent>
#include <QQuickWindow>

namespace tallowby {
namespace {

using namespace std::chrono_literals;

class FlipScene : public testing::Test {
protected:
    FlipScene() {
        QQmlComponent component(&test::qmlEngine(), QUrl(u"qrc:/qt/qml/Tallowby/Flip/FlipContainer.qml"_qs));
        container.reset(qobject_cast<QQuickItem *>(component.create()));
        EXPECT_TRUE(container) << qPrintable(component.errorString());
        scene = qobject_cast<FlipSceneView *>(container->property("scene").value<QObject *>());
        scene->setScheduler(clock);
        container->setSize({640, 360});
        canvas.setSize({640, 360});
    }

    void flip() {
        scene->flip([this] { ++completions; });
    }

    test::LogCapture log;
    test::VirtualScheduler clock;
    test::NotingCanvas canvas;
    std::unique_ptr<QQuickItem> container;
    FlipSceneView *scene = nullptr;
    int completions = 0;
};

TEST_F(FlipScene, completesAtOnceWithoutBackContentAndOnlyOnceAtATime) {
    flip();
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(scene->isOpen());
    canvas.setSize({});
    scene->setBackContent(&canvas);
    EXPECT_FALSE(scene->hasBackContent()) << "nothing to take a picture of";
    canvas.setSize({640, 360});
    scene->setBackContent(&canvas);
    flip();
    flip();
    EXPECT_EQ(completions, 1);
    test::runTurn(*scene, clock);
    EXPECT_EQ(completions, 2);
    EXPECT_TRUE(scene->isOpen());
    EXPECT_EQ(clock.pendingCalls(), 0U);
}

TEST_F(FlipScene, startsItsClockWithTheFirstFrameThatWasSeen) {
    scene->setBackContent(&canvas);
    flip();
    scene->advanceFrame();
    clock.advance(900ms);
    scene->noteFramePresented();
    scene->advanceFrame();
    EXPECT_TRUE(scene->frontFace()->isVisible()) << "a slow first frame swallows nothing of the turn";
    EXPECT_EQ(scene->shadowOpacity(), 0);
    clock.advance(250ms);
    scene->advanceFrame();
    EXPECT_FALSE(scene->frontFace()->isVisible());
    EXPECT_TRUE(scene->backFace()->isVisible());
    EXPECT_GT(scene->shadowOpacity(), 0.15);
    // Slow frames are frames: the watch for a window that is not seen leaves them alone.
    clock.advance(200ms);
    scene->advanceFrame();
    EXPECT_TRUE(scene->isAnimating());
    clock.advance(2s);
    EXPECT_FALSE(scene->isAnimating());
    EXPECT_EQ(scene->shadowOpacity(), 0);
}

TEST_F(FlipScene, keepsNoPictureLongerThanItIsSeen) {
    scene->setBackContent(&canvas);
    EXPECT_EQ(scene->pictureSource(), nullptr);
    flip();
    EXPECT_EQ(scene->pictureSource(), &canvas);
    test::runTurn(*scene, clock);
    scene->releasePicture();
    flip();
    EXPECT_EQ(scene->pictureSource(), &canvas) << "what is seen now is taken for the way back";
    scene->advanceFrame();
    scene->noteFramePresented();
    clock.advance(300ms);
    scene->advanceFrame();
    EXPECT_TRUE(scene->isAnimating());
    EXPECT_EQ(scene->pictureSource(), nullptr) << "freed while there still are frames to free it in";
    test::runTurn(*scene, clock);
    flip();
    scene->cleanup();
    EXPECT_FALSE(scene->isOpen());
    EXPECT_FALSE(scene->hasBackContent());
    EXPECT_TRUE(scene->frontFace()->isVisible());
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(clock.pendingCalls(), 0U);
}

TEST_F(FlipScene, fadesForThoseWhoWantLessMovement) {
    scene->setTurnStyle(TurnStyle::crossFade);
    scene->setBackContent(QImage(64, 36, QImage::Format_RGB32));
    flip();
    scene->advanceFrame();
    scene->noteFramePresented();
    clock.advance(75ms);
    scene->advanceFrame();
    EXPECT_TRUE(scene->frontFace()->isVisible());
    EXPECT_NEAR(scene->backFace()->opacity(), 0.5, 1e-9);
    EXPECT_EQ(scene->shadowOpacity(), 0);
    clock.advance(75ms);
    scene->advanceFrame();
    EXPECT_EQ(completions, 0) << "the end is seen before it is told";
    scene->advanceFrame();
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(scene->backFace()->opacity(), 1);
}

/// Where in the rendered picture of the window the colour stands; null when nowhere.
QRect placeOf(QRgb color, const QImage &picture) {
    QRect place;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if ((picture.pixel(x, y) & 0xFFFFFF) == (color & 0xFFFFFF)) {
                place |= QRect(x, y, 1, 1);
            }
        }
    }
    return place;
}

TEST_F(FlipScene, showsItsBackReadably) {
    QImage canvasPicture(640, 360, QImage::Format_RGB32);
    canvasPicture.fill(Qt::white);
    QPainter(&canvasPicture).fillRect(40, 20, 100, 50, QColor(255, 0, 0));
    QQuickWindow window;
    window.resize(640, 360);
    container->setParentItem(window.contentItem());
    window.show();
    QCoreApplication::processEvents(); // The window is exposed.
    scene->setBackContent(canvasPicture);
    EXPECT_TRUE(placeOf(0xFF0000, window.grabWindow()).isNull()) << "the front faces the viewer";
    flip();
    clock.advance(3s);
    EXPECT_EQ(placeOf(0xFF0000, window.grabWindow()), QRect(40, 20, 100, 50)) << "neither mirrored nor scaled";
    flip();
    clock.advance(3s);
    EXPECT_TRUE(placeOf(0xFF0000, window.grabWindow()).isNull());
}

TEST_F(FlipScene, paintsThePictureOfAViewThatComesWithTheFirstFrame) {
    QQuickWindow window;
    window.resize(640, 360);
    container->setParentItem(window.contentItem());
    QQmlComponent component(&test::qmlEngine());
    component.setData("import QtQuick; Rectangle { color: '#00ff00'; width: 640; height: 360 }", {});
    const std::unique_ptr<QQuickItem> view(qobject_cast<QQuickItem *>(component.create()));
    view->setParentItem(window.contentItem());
    view->setOpacity(0);
    window.show();
    QCoreApplication::processEvents();
    scene->setBackContent(view.get());
    flip();
    (void) window.grabWindow();
    QCoreApplication::processEvents(); // The pictures are delivered.
    scene->noteFramePresented();
    clock.advance(250ms);
    scene->advanceFrame();
    const QImage halfWay = window.grabWindow();
    EXPECT_EQ(qGreen(halfWay.pixel(320, 180)) / 16, 255 * 83 / 100 / 16) << "under the shadow";
    EXPECT_EQ(qRed(halfWay.pixel(320, 180)), 0);
    EXPECT_GT(qRed(halfWay.pixel(4, 180)), 100) << "beside the card";
    clock.advance(3s);
    EXPECT_EQ(window.grabWindow().pixel(320, 180), 0xFF00FF00);
}

TEST(CanvasWrapper, letsAViewGoThatAnotherTakes) {
    test::NotingCanvas canvas;
    {
        CanvasWrapper wrapper;
        wrapper.setSize({300, 200});
        wrapper.setView(&canvas);
        EXPECT_EQ(canvas.size(), QSizeF(300, 200));
        CanvasWrapper other;
        other.setView(&canvas);
        EXPECT_EQ(wrapper.view(), nullptr);
        wrapper.setSize({500, 500});
        EXPECT_TRUE(canvas.size().isEmpty());
    }
    EXPECT_EQ(canvas.parentItem(), nullptr);
}

} // namespace
} // namespace tallowby
