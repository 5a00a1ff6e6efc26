#include "platform/ForeignClient.h"
#include "platform/linux/x11/X11Presentation.h"
#include "platform/linux/x11/X11Workspace.h"
#include "support/WaitUntil.h"
#include "support/XSession.h"

#include <gtest/gtest.h>

#include <QWindow>

namespace tallowby {

namespace {

using test::waitUntil;

class PresentationTest : public testing::Test {
protected:
    PresentationTest() {
        panel.setFlags(Qt::FramelessWindowHint);
        panel.setGeometry(0, 0, 400, 300);
    }
    [[nodiscard]] bool panelHas(const QByteArray &state) {
        return other.hasState(xcb_window_t(panel.winId()), "_NET_WM_STATE_" + state);
    }
    [[nodiscard]] bool isPanel() {
        const auto desktop = other.x11().items(xcb_window_t(panel.winId()), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, 1);
        return panelHas("ABOVE") && panelHas("SKIP_TASKBAR") && panelHas("SKIP_PAGER") &&
               desktop == std::vector<std::uint32_t>{0xffffffff};
    }
    void showPanel() {
        presentation.preparePanel(panel);
        panel.setVisible(true);
        EXPECT_TRUE(waitUntil([&] { return panel.isExposed(); }));
    }

    test::ForeignClient other;
    XcbConnection x11;
    X11Presentation presentation{x11};
    QWindow panel;
};

TEST_F(PresentationTest, ThePanelIsOneAtEveryShowing) {
    for (int showing = 0; showing < 3; ++showing) {
        SCOPED_TRACE(showing);
        showPanel();
        EXPECT_TRUE(waitUntil([&] { return isPanel() && !panelHas("FULLSCREEN"); }));
        presentation.setPresentationOptions(kAutoHideDock | kAutoHideMenuBar);
        EXPECT_TRUE(waitUntil([&] { return panelHas("FULLSCREEN") && isPanel(); }));
        presentation.setPresentationOptions(kDefaultPresentation);
        if (showing == 1) {
            // The last showing ends before Qt has seen that it is no longer full-screen.
            EXPECT_TRUE(waitUntil([&] { return !panelHas("FULLSCREEN"); }));
        }
        panel.setVisible(false);
    }
}

TEST_F(PresentationTest, OptionsThatAreInForceBeforeTheShowingHold) {
    presentation.preparePanel(panel);
    EXPECT_TRUE(panelHas("STICKY")) << "openbox reads it, but does not show it later";
    presentation.setPresentationOptions(kAutoHideMenuBar);
    panel.setVisible(true);
    EXPECT_TRUE(waitUntil([&] { return panel.isExposed() && panelHas("FULLSCREEN") && isPanel(); }));
    EXPECT_EQ(presentation.presentationOptions(), kAutoHideMenuBar);
    presentation.setPresentationOptions(kDefaultPresentation);
    EXPECT_TRUE(waitUntil([&] { return !panelHas("FULLSCREEN"); }));
    EXPECT_TRUE(isPanel());
}

enum class Around { windowManager, nothing, compositor };

class Focus : public PresentationTest, public testing::WithParamInterface<Around> {
protected:
    void SetUp() override {
        if (GetParam() == Around::nothing) {
            test::XSession::adopted().endWindowManager();
        } else if (GetParam() == Around::compositor) {
            test::XSession::adopted().startCompositor();
        }
    }
    void TearDown() override {
        if (GetParam() == Around::nothing) {
            test::XSession::adopted().startWindowManager();
        } else if (GetParam() == Around::compositor) {
            test::XSession::adopted().endCompositor();
        }
    }
};

TEST_P(Focus, IsTakenFromAnotherProgramAndGivenBack) {
    X11Workspace workspace(x11);
    other.showAndFocus();
    std::optional<RunningApplication> before;
    ASSERT_TRUE(waitUntil([&] {
        before = workspace.frontmostApplication();
        return before && before->bundleIdentifier == u"Terminal";
    }));

    presentation.preparePanel(panel);
    panel.setVisible(true);
    presentation.activateIgnoringOtherApps(panel); // At once, before the window can be seen.
    EXPECT_TRUE(waitUntil([&] { return other.inputFocus() == panel.winId(); }));
    EXPECT_TRUE(waitUntil([&] { return panel.isActive(); }));
    EXPECT_TRUE(waitUntil([&] { return workspace.frontmostApplication()->window == panel.winId(); }));
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, workspace.mainBundleIdentifier());

    workspace.activate(*before);
    EXPECT_TRUE(waitUntil([&] { return other.inputFocus() == other.window(); }));
    presentation.activateIgnoringOtherApps(panel); // Now while it is shown.
    EXPECT_TRUE(waitUntil([&] { return other.inputFocus() == panel.winId(); }));

    other.destroyWindow();
    workspace.activate(*before);
    EXPECT_EQ(other.inputFocus(), panel.winId());
}

INSTANTIATE_TEST_SUITE_P(With, Focus, testing::Values(Around::windowManager, Around::nothing, Around::compositor),
                         [](const auto &instance) {
                             switch (instance.param) {
                             case Around::windowManager:
                                 return "AWindowManager";
                             case Around::nothing:
                                 return "NoWindowManager";
                             case Around::compositor:
                                 return "ACompositor";
                             }
                             Q_UNREACHABLE();
                         });

TEST(Workspace, TellsWhichApplicationBecomesActive) {
    XcbConnection x11;
    X11Workspace workspace(x11);
    QStringList activated;
    QObject::connect(&workspace, &Workspace::applicationActivated,
                     [&](const RunningApplication &application) { activated << application.bundleIdentifier; });
    test::ForeignClient terminal("Terminal");
    test::ForeignClient editor("Gedit");
    editor.setApplicationID("org.gnome.gedit");
    terminal.showAndFocus();
    EXPECT_TRUE(waitUntil([&] { return activated == QStringList{u"Terminal"_qs}; }));
    editor.showAndFocus();
    EXPECT_TRUE(waitUntil([&] { return activated.endsWith(u"org.gnome.gedit"_qs); }));
    EXPECT_EQ(workspace.frontmostApplication()->window, editor.window());
    QWindow own;
    own.setVisible(true);
    EXPECT_TRUE(waitUntil([&] { return activated.endsWith(workspace.mainBundleIdentifier()); }));
    EXPECT_EQ(activated.size(), 3);
}

} // namespace

} // namespace tallowby
