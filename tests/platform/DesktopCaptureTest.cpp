#include "platform/ForeignClient.h"
#include "platform/linux/x11/PixelReduction.h"
#include "platform/linux/x11/X11DesktopCapture.h"
#include "platform/linux/x11/X11Displays.h"
#include "support/XSession.h"

#include <gtest/gtest.h>

#include <QColor>

namespace tallowby {

namespace {

Display displayAt(QRect frame, double devicePixelRatio = 1.0) {
    Display display;
    display.frame = frame;
    display.devicePixelRatio = devicePixelRatio;
    return display;
}

TEST(Displays, AreThoseOfTheSessionWithNumbersThatStay) {
    const std::vector<Display> displays = X11Displays().all();
    ASSERT_EQ(displays.size(), 1U);
    EXPECT_EQ(displays.front().frame, QRect(0, 0, 1280, 800));
    EXPECT_TRUE(displays.front().isMain);
    EXPECT_EQ(displays.front().name, u"screen");
    EXPECT_EQ(displays.front().id, 0x855f04c1U);
}

class DesktopCaptureTest : public testing::TestWithParam<const char *> {};

TEST_P(DesktopCaptureTest, AveragesWhatStandsOnTheScreen) {
    // 100 is no multiple of 8 in either direction: the last square is half a one.
    const test::XSession session({.screenSize = {100, 100}, .serverArguments = {GetParam(), "MIT-SHM"}});
    ASSERT_EQ(session.error(), QString());
    test::ForeignClient red("Red", session.display());
    test::ForeignClient blue("Blue", session.display());
    red.paint({0, 0, 100, 52}, 0xff0000);
    blue.paint({0, 52, 100, 48}, 0x0040c0);

    XcbConnection x11(session.display().toLocal8Bit());
    X11DesktopCapture capture(x11);
    const Display display = displayAt({0, 0, 50, 50}, 2.0);
    const QImage image = capture.capture(display, 8);
    ASSERT_EQ(image.size(), QSize(13, 13));
    EXPECT_EQ(QColor(image.pixel(0, 0)), QColor(255, 0, 0));
    EXPECT_EQ(QColor(image.pixel(12, 6)), QColor(128, 32, 96)) << "four rows of each";
    EXPECT_EQ(QColor(image.pixel(12, 12)), QColor(0, 64, 192));

    const QImage part = capture.capture(displayAt({60, 40, 40, 60}), 1);
    ASSERT_EQ(part.size(), QSize(40, 60));
    EXPECT_EQ(QColor(part.pixel(39, 11)), QColor(255, 0, 0));
    EXPECT_EQ(QColor(part.pixel(0, 12)), QColor(0, 64, 192));

    EXPECT_TRUE(capture.capture(displayAt({500, 0, 10, 10}), 8).isNull());
    EXPECT_TRUE(capture.capture(display, 0).isNull());
}

INSTANTIATE_TEST_SUITE_P(Through, DesktopCaptureTest, testing::Values("+extension", "-extension"),
                         [](const auto &instance) {
                             return *instance.param == '+' ? "SharedMemory" : "TheConnection";
                         });

TEST(PixelReduction, ReadsEveryLayoutOfWholeBytes) {
    struct Case {
        int bitsPerPixel;
        bool mostSignificantByteFirst;
        std::uint32_t red, green, blue;
        std::vector<std::uint8_t> pixel;
    };
    const Case cases[] = {
        {32, false, 0xff0000, 0xff00, 0xff, {3, 2, 1, 0}}, {32, true, 0xff0000, 0xff00, 0xff, {0, 1, 2, 3}},
        {32, false, 0xff, 0xff00, 0xff0000, {1, 2, 3, 0}}, {24, false, 0xff0000, 0xff00, 0xff, {3, 2, 1}},
        {24, true, 0xff0000, 0xff00, 0xff, {1, 2, 3}},
    };
    for (const Case &layoutCase : cases) {
        const auto layout = PixelLayout::fromMasks(layoutCase.bitsPerPixel, layoutCase.mostSignificantByteFirst,
                                                   layoutCase.red, layoutCase.green, layoutCase.blue);
        ASSERT_TRUE(layout);
        PixelReduction reduction(*layout, {1, 1}, 4);
        reduction.addRows(layoutCase.pixel.data(), 4, 1);
        EXPECT_EQ(reduction.image().pixel(0, 0), qRgb(1, 2, 3));
    }
    EXPECT_FALSE(PixelLayout::fromMasks(16, false, 0xf800, 0x7e0, 0x1f));
    EXPECT_FALSE(PixelLayout::fromMasks(32, false, 0x3ff00000, 0xffc00, 0x3ff));
}

} // namespace

} // namespace tallowby
