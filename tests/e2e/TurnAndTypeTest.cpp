#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QFile>
#include <QProcess>

#include <csignal>

namespace tallowby::test {

using namespace std::chrono_literals;
using TurnAndType = Desk;

TEST_F(TurnAndType, LettersTypedOnTheHeelsOfTheKeyMakeTheNote) {
    startProgram();
    keyboard.type(u"before ");
    pressHotKey();
    // The card has hardly begun to turn.
    keyboard.type(u"Ink & Paper");
    ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    EXPECT_TRUE(notesBecome({QStringLiteral("Ink & Paper")}));
    EXPECT_EQ(other.typed().toStdString(), "before ");

    // Nobody else on this machine reads a note.
    EXPECT_EQ(QFile::permissions(dataFolder() + QStringLiteral("/blocks.json")) & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
    EXPECT_EQ(QFile::permissions(dataFolder()) & (QFile::ExeGroup | QFile::ExeOther), QFile::Permissions());

    closeCanvas();
    ASSERT_TRUE(eventually([this] { return other.hasFocus(); }));
    keyboard.type(u"after");
    EXPECT_TRUE(eventually([this] { return other.typed() == u"before after"; })) << qPrintable(other.typed());
    EXPECT_TRUE(notesBecome({QStringLiteral("Ink & Paper")}));
}

TEST_F(TurnAndType, HastyPressesTakeNothingFromLaterTurns) {
    startProgram();
    const auto pressesAndPauses = {
        std::vector{0ms, 0ms},         // at once
        std::vector{0ms, 4ms},         // a bounce
        std::vector{0ms, 40ms, 200ms}, // an impatient finger
    };
    QStringList texts;
    int typings = 0;
    for (const auto &pauses : pressesAndPauses) {
        for (const auto pause : pauses) {
            std::this_thread::sleep_for(pause);
            pressHotKey();
        }
        ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
        pressHotKey();
        std::this_thread::sleep_for(40ms);
        closeCanvas(); // The card is turning back already.
        for (int turn = 0; turn < 2; ++turn) {
            ASSERT_TRUE(eventually([this] { return other.hasFocus(); }));
            const QString text = QStringLiteral("abcdefghij%1").arg(++typings);
            pressHotKey();
            for (const QChar letter : text) {
                keyboard.type(QStringView(&letter, 1));
                std::this_thread::sleep_for(12ms);
            }
            ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
            keyboard.tap(XK_Escape);
            EXPECT_TRUE(notesBecome(texts << text));
            closeCanvas();
        }
    }
    EXPECT_EQ(other.typed().toStdString(), "");
}

TEST_F(TurnAndType, DeadKeysComposeTheFirstLetterAndLaterOnes) {
    QProcess layout;
    layout.setProcessEnvironment(environment());
    layout.start(QStringLiteral("setxkbmap"), {QStringLiteral("us"), QStringLiteral("intl")});
    ASSERT_TRUE(layout.waitForFinished());
    ASSERT_EQ(layout.exitCode(), 0);

    startProgram();
    openCanvas();
    keyboard.tap(XK_dead_acute);
    keyboard.type(u"et");
    keyboard.tap(XK_dead_acute);
    keyboard.type(u"e 1");
    EXPECT_TRUE(notesBecome({QStringLiteral("été 1")}));
}

TEST_F(TurnAndType, AClickOpensANoteAgainAndAnotherSpotBeginsANewOne) {
    startProgram();
    openCanvas();
    const QPoint place = kScreenCentre + QPoint(-200, -100);
    pointer.moveTo(place);
    keyboard.type(u"one");
    ASSERT_TRUE(notesBecome({QStringLiteral("one")}));
    keyboard.tap(XK_Escape);

    pointer.moveTo(kScreenCentre + QPoint(200, 150));
    keyboard.type(u"two");
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({QStringLiteral("one"), QStringLiteral("two")}));

    const QPoint corner = kScreenCentre + noteAt(QStringLiteral("one")).toPoint();
    const QRect surroundings(corner - QPoint(10, 10), QSize(60, 50));
    EXPECT_FALSE(isAccentIn(surroundings));
    pointer.click(corner + QPoint(12, 14));
    // A window manager sees a click first, keys it does not: they may overtake it. A person waits for the frame.
    ASSERT_TRUE(eventually([&] { return isAccentIn(surroundings); }));
    keyboard.tap(XK_End);
    keyboard.type(u" more");
    EXPECT_TRUE(notesBecome({QStringLiteral("one more"), QStringLiteral("two")}));
}

TEST_F(TurnAndType, DraggingThePaperAndTheWheelMoveWhereANewNoteLies) {
    startProgram();
    openCanvas();
    const QPoint place = kScreenCentre + QPoint(-200, -100);
    const auto typeAt = [&](const QString &text) {
        pointer.moveTo(place);
        keyboard.type(text);
        keyboard.tap(XK_Escape);
    };
    typeAt(QStringLiteral("start"));
    ASSERT_TRUE(notesBecome({QStringLiteral("start")}));

    // 300 to the right and 250 down: the same spot of the screen is now that much further left and up on the paper.
    const QPoint start = kScreenCentre + noteAt(QStringLiteral("start")).toPoint();
    pointer.drag(kScreenCentre + QPoint(100, 0), kScreenCentre + QPoint(400, 250));
    ASSERT_TRUE(eventually([&] { return inkIn(QRect(start + QPoint(300, 250), QSize(60, 40))) > 0.01; }));
    typeAt(QStringLiteral("moved"));
    ASSERT_TRUE(notesBecome({QStringLiteral("start"), QStringLiteral("moved")}));
    const QPointF shift = noteAt(QStringLiteral("moved")) - noteAt(QStringLiteral("start"));
    // The drag starts with a threshold of some pixels, and a note is as wide as its text, about whose middle it lies.
    EXPECT_NEAR(shift.x(), -300, 25);
    EXPECT_NEAR(shift.y(), -250, 25);

    // The paper under the pointer stays where it is, all else comes nearer: the spot of the first note, seen from the
    // pointer, is further away than before.
    pointer.moveTo(place + QPoint(300, 0));
    const QRect zoomControl(0, kScreenSize.height() - 60, 160, 60);
    keyboard.press(XK_Control_L);
    for (int notch = 0; notch < 3; ++notch) {
        const QImage before = picture(zoomControl);
        pointer.turnWheel(1);
        ASSERT_TRUE(eventually([&] { return picture(zoomControl) != before; }));
    }
    keyboard.release(XK_Control_L);
    typeAt(QStringLiteral("nearer"));
    ASSERT_TRUE(notesBecome({QStringLiteral("start"), QStringLiteral("moved"), QStringLiteral("nearer")}));
    EXPECT_GT(noteAt(QStringLiteral("nearer")).x(), noteAt(QStringLiteral("moved")).x() + 30);
}

TEST_F(TurnAndType, AGraphicsInterfaceDrawsTheSameWayThereAndBack) {
    environment().insert(QStringLiteral("QSG_RHI_BACKEND"), QStringLiteral("opengl"));
    startProgram();
    pressHotKey();
    keyboard.type(u"drawn by shaders");
    ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    EXPECT_TRUE(notesBecome({QStringLiteral("drawn by shaders")}));
    closeCanvas();
    EXPECT_TRUE(eventually([this] { return other.hasFocus(); }));
}

TEST_F(TurnAndType, WithReducedMotionTheWayThereAndBackIsTheSame) {
    environment().insert(QStringLiteral("TALLOWBY_REDUCED_MOTION"), QStringLiteral("1"));
    startProgram();
    for (const QString &note : {QStringLiteral("first"), QStringLiteral("second")}) {
        pressHotKey();
        keyboard.type(note);
        ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
        keyboard.tap(XK_Escape);
        closeCanvas();
        ASSERT_TRUE(eventually([this] { return other.hasFocus(); }));
        pointer.moveTo(kScreenCentre + QPoint(200, 100));
    }
    EXPECT_TRUE(notesBecome({QStringLiteral("first"), QStringLiteral("second")}));
    EXPECT_EQ(other.typed().toStdString(), "");
}

TEST_F(TurnAndType, AKillInTheMiddleOfATurnGivesTheKeyboardBack) {
    startProgram();
    pressHotKey();
    ASSERT_TRUE(program().says(u"[FlipWindow] 👁️ Shown on main screen"));
    program().send(SIGKILL);
    EXPECT_EQ(program().exitCode(), -1);
    ASSERT_TRUE(eventually([this] { return other.hasFocus(); }));
    keyboard.type(u"still here");
    EXPECT_TRUE(eventually([this] { return other.typed().endsWith(u"still here"); })) << qPrintable(other.typed());
}

} // namespace tallowby::test
