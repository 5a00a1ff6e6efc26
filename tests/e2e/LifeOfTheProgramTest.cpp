#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>

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

} // namespace tallowby::test
