#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "e2e/WindowList.h"
#include "model/Block.h"
#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"
#include "support/EndlessDrawing.h"
#include "support/bus/TrayHost.h"

#include <X11/keysym.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

namespace tallowby::test {

using LifeOfTheProgram = Desk;

TEST_F(LifeOfTheProgram, WhatWasWrittenIsBackAfterARestart) {
    startProgram();
    openCanvas();
    keyboard.type(u"Remember the milk");
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({QStringLiteral("Remember the milk")}));
    closeCanvas();
    const QJsonArray before = notes();
    endProgram();

    startProgram();
    openCanvas();
    const QPoint corner = kScreenCentre + noteAt(QStringLiteral("Remember the milk")).toPoint();
    EXPECT_TRUE(eventually([&] { return inkIn(QRect(corner, QSize(160, 40))) > 0.02; }));
    EXPECT_LT(inkIn(QRect(corner + QPoint(0, 300), QSize(160, 40))), 0.02);
    EXPECT_EQ(notes(), before);
    endProgram();
}

TEST_F(LifeOfTheProgram, ALaterStartHandsItsCommandOver) {
    startProgram();
    EXPECT_EQ(command(QStringLiteral("--toggle")), 0);
    EXPECT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    keyboard.type(u"toggled");
    EXPECT_TRUE(notesBecome({QStringLiteral("toggled")}));
    EXPECT_EQ(command(QStringLiteral("--toggle")), 0);
    EXPECT_TRUE(program().says(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)"));
    EXPECT_EQ(command(QStringLiteral("--quit")), 0);
    EXPECT_EQ(program().exitCode(), 0);
}

TEST_F(LifeOfTheProgram, ArgumentsThatItDoesNotKnowAreAnErrorThatSaysHow) {
    const auto run = [this](const QStringList &arguments) {
        Program started(environment(), arguments);
        const int exitCode = started.exitCode();
        return std::pair(exitCode, started.output());
    };
    for (const QStringList &arguments : {QStringList{QStringLiteral("--bogus")}, QStringList{QStringLiteral("notes")},
                                         QStringList{QStringLiteral("--toggle"), QStringLiteral("--quit")}}) {
        const auto [exitCode, output] = run(arguments);
        EXPECT_EQ(exitCode, 2) << qPrintable(arguments.join(u' '));
        EXPECT_TRUE(output.startsWith(u"usage: tallowby ")) << qPrintable(output);
        EXPECT_FALSE(output.contains(u'\n')) << qPrintable(output);
    }
    EXPECT_EQ(run({QStringLiteral("--help")}).first, 0);
    EXPECT_EQ(run({QStringLiteral("--version")}), std::pair(0, QStringLiteral("Tallowby " TALLOWBY_VERSION)));
    // Nothing to end is no error.
    EXPECT_EQ(run({QStringLiteral("--quit")}).first, 0);
    EXPECT_FALSE(QFile::exists(dataFolder() + QStringLiteral("/blocks.json")));
}

TEST_F(LifeOfTheProgram, WhereTheKeyIsTakenTheCommandStillTurns) {
    other.grabAltSpace();
    startProgram();
    EXPECT_TRUE(program().hasSaid(u"[HotkeyListener] ❌ Failed to register hotkey (status 10)"));
    EXPECT_EQ(command(QStringLiteral("--toggle")), 0);
    EXPECT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    keyboard.type(u"by command");
    EXPECT_TRUE(notesBecome({QStringLiteral("by command")}));
}

TEST_F(LifeOfTheProgram, SignalsEndItCleanlyWhateverItIsDoing) {
    startProgram();
    program().send(SIGINT);
    EXPECT_EQ(program().exitCode(), 0);

    startProgram();
    openCanvas();
    endProgram();
    EXPECT_TRUE(eventually([this] { return other.hasFocus(); }));

    startProgram();
    pressHotKey();
    ASSERT_TRUE(program().says(u"[FlipWindow] 👁️ Shown on main screen"));
    endProgram();
    EXPECT_TRUE(eventually([this] { return other.hasFocus(); }));
    keyboard.type(u"on with it");
    EXPECT_TRUE(eventually([this] { return other.typed().endsWith(u"on with it"); })) << qPrintable(other.typed());
}

TEST_F(LifeOfTheProgram, AFileThatCannotBeReadIsSetAsideAndNotLost) {
    ASSERT_TRUE(QDir().mkpath(dataFolder()));
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("[{\"id\": \"half a rec");
    file.close();

    startProgram();
    openCanvas();
    ASSERT_TRUE(program().hasSaid(u"[BlockStorage] ❌ Load failed: ")) << qPrintable(program().output());
    keyboard.type(u"new");
    EXPECT_TRUE(notesBecome({QStringLiteral("new")}));
    const QStringList asides = QDir(dataFolder()).entryList({QStringLiteral("blocks.json.unreadable-*")});
    ASSERT_EQ(asides.size(), 1);
    QFile aside(dataFolder() + u'/' + asides.first());
    ASSERT_TRUE(aside.open(QFile::ReadOnly));
    EXPECT_EQ(aside.readAll(), QByteArray("[{\"id\": \"half a rec"));
}

TEST_F(LifeOfTheProgram, WhatWasJustTypedIsKeptHoweverItEnds) {
    const QString texts[] = {u"by signal"_qs, u"by terminal"_qs, u"by command"_qs};
    QStringList kept;
    for (const QString &text : texts) {
        startProgram();
        openCanvas();
        pointer.moveTo(QPoint(200, 150 + 90 * int(kept.size())));
        keyboard.type(text);
        const QRect written(150, 130 + 90 * int(kept.size()), 160, 40);
        ASSERT_TRUE(eventually([&] { return inkIn(written) > 0.01; }));
        kept << text;
        if (text == texts[2]) {
            EXPECT_EQ(command(QStringLiteral("--quit")), 0);
            EXPECT_EQ(program().exitCode(), 0);
        } else {
            program().send(text == texts[0] ? SIGTERM : SIGHUP);
            EXPECT_EQ(program().exitCode(), 0);
        }
        EXPECT_TRUE(notesBecome(kept)) << qPrintable(text);
    }
}

TEST_F(LifeOfTheProgram, ADiskThatIsFullIsSaidAndNeedsNoFurtherEditWhenThereIsRoomAgain) {
    startProgram();
    TrayHost tray(environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));
    ASSERT_TRUE(eventually([&] { return tray.items().size() == 1; }));
    openCanvas();
    const QRect corner(kScreenSize.width() / 2, 0, kScreenSize.width() / 2 - 100, 60);
    EXPECT_LT(inkIn(corner), 0.005);
    program().limitFiles(10);
    keyboard.type(u"kept all the same");
    ASSERT_TRUE(program().says(u"[BlockStorage] ❌ Background save failed: cannot write beside "));
    EXPECT_TRUE(eventually([&] { return inkIn(corner) > 0.01; })) << "the canvas says so";
    const auto firstRow = [&] { return tray.menu(tray.items().first()).at(0).label; };
    EXPECT_TRUE(eventually([&] { return firstRow().startsWith(u"Notes cannot be saved: "); }))
        << qPrintable(firstRow());
    ASSERT_TRUE(program().says(u"[BlockStorage] ❌ Background save failed: "));
    program().limitFiles(std::nullopt);
    EXPECT_TRUE(notesBecome({QStringLiteral("kept all the same")}));
    EXPECT_TRUE(eventually([&] { return inkIn(corner) < 0.005; }));
    EXPECT_TRUE(eventually([&] { return firstRow() == u"Settings…"; })) << qPrintable(firstRow());
}

TEST_F(LifeOfTheProgram, ASecondProgramOnTheSameNotesSaysSoAndLeavesThemAlone) {
    startProgram();
    openCanvas();
    keyboard.type(u"mine");
    ASSERT_TRUE(notesBecome({QStringLiteral("mine")}));
    closeCanvas();
    QProcessEnvironment elsewhere = environment();
    elsewhere.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nowhere"));
    Program second(elsewhere);
    ASSERT_TRUE(second.says(u"[AppDelegate] ❌ Another Tallowby has the notes open: process "))
        << qPrintable(second.output());
    WindowList windows(session.display());
    ASSERT_TRUE(
        eventually([&] { return windows.isActive(QStringLiteral("Your notes are open in another Tallowby")); }));
    keyboard.tap(XK_Escape);
    EXPECT_EQ(second.exitCode(), 3);

    Program third(elsewhere);
    ASSERT_TRUE(third.says(u"[AppDelegate] ❌ Another Tallowby has the notes open: process "));
    ASSERT_TRUE(
        eventually([&] { return windows.isActive(QStringLiteral("Your notes are open in another Tallowby")); }));
    endProgram();
    keyboard.tap(XK_Tab); // Past the menu and the cross in the corner, and the button that closes.
    keyboard.tap(XK_Tab);
    keyboard.tap(XK_space);
    EXPECT_TRUE(third.says(u"[AppDelegate] ✅ Tallowby ready! Press ⌥ + Space to flip."));
    EXPECT_TRUE(notesBecome({QStringLiteral("mine")}));
}

TEST_F(LifeOfTheProgram, AFileThatIsPutInPlaceMeanwhileIsJoined) {
    startProgram();
    openCanvas();
    keyboard.type(u"before");
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({QStringLiteral("before")}));
    QJsonArray records = notes();
    QJsonObject brought = records.first().toObject();
    brought[u"id"] = QStringLiteral("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
    brought[u"raw_text"] = QStringLiteral("from a backup");
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    ASSERT_TRUE(file.remove() && file.open(QFile::WriteOnly));
    file.write(QJsonDocument(QJsonArray{brought}).toJson(QJsonDocument::Compact));
    file.close();
    pointer.moveTo(QPoint(300, 300));
    keyboard.type(u"after");
    EXPECT_TRUE(notesBecome({QStringLiteral("before"), QStringLiteral("from a backup"), QStringLiteral("after")}));
}

TEST_F(LifeOfTheProgram, APictureThatHangsHoldsUpNothing) {
    const QByteArray endless = endlessDrawing();
    const QByteArray black = "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
                             "<rect width='40' height='40'/></svg>";
    ASSERT_TRUE(QDir().mkpath(dataFolder()));
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("[");
    const QPoint places[] = {{-500, -300}, {-150, -300}, {200, -300}};
    for (const QPoint &place : places) {
        const bool isLast = place.x() == 200;
        Block block({}, BlockType::image, QRectF(place, QSizeF(300, 200)));
        block.setContent("{\"image\":\"" + (isLast ? black : endless).toBase64() + "\"}");
        BlockRecordWriter writer(kFileTimestamps);
        ASSERT_FALSE(writer.write(*block.fields()));
        file.write(QByteArray::fromStdString(std::string(writer.text())) + (isLast ? "]" : ","));
    }
    file.close();

    startProgram();
    openCanvas();
    EXPECT_TRUE(
        eventually([&] { return inkIn(QRect(kScreenCentre + places[2] + QPoint(60, 10), QSize(180, 180))) > 0.9; }));
    pointer.moveTo(kScreenCentre + QPoint(0, 100));
    keyboard.type(u"usable");
    EXPECT_TRUE(notesBecome({QString(), QString(), QString(), QStringLiteral("usable")}));
    QElapsedTimer clock;
    clock.start();
    endProgram();
    EXPECT_LT(clock.elapsed(), 2000);
}

} // namespace tallowby::test
