#pragma once

#include "platform/desktop/AccessibilityTrust.h"
#include "platform/desktop/DesktopCapture.h"
#include "platform/desktop/DesktopPlatform.h"
#include "platform/desktop/Displays.h"
#include "platform/desktop/HotKeyService.h"
#include "platform/desktop/LoginItem.h"
#include "platform/desktop/MotionPreference.h"
#include "platform/desktop/Presentation.h"
#include "platform/desktop/ScreenLock.h"
#include "platform/desktop/StatusArea.h"
#include "platform/desktop/Workspace.h"
#include "support/FakeAudio.h"
#include "support/FakeVideo.h"

#include <QStringList>

#include <map>
#include <set>
#include <utility>

namespace tallowby::test {

struct FakeAccessibilityTrust final : AccessibilityTrust {
    bool isTrusted = true;
    mutable int checks = 0;
    int prompts = 0;
    int settingsOpened = 0;

    [[nodiscard]] bool isProcessTrusted() const override {
        ++checks;
        return isTrusted;
    }
    [[nodiscard]] bool isProcessTrustedWithPrompt() override {
        ++prompts;
        return isTrusted;
    }
    void openSystemSettings() override { ++settingsOpened; }
};

struct FakeDesktopCapture final : DesktopCapture {
    /// What the desktop looks like; null for a platform that gives no pictures.
    QImage picture;
    int captures = 0;

    [[nodiscard]] QImage capture(const Display &display, int reduction) override;
};

/// One main display of 1280 × 720 at the origin, until a test says otherwise.
struct FakeDisplays final : Displays {
    std::vector<Display> displays{{.id = 1, .name = {}, .frame = {0, 0, 1280, 720}, .isMain = true}};

    [[nodiscard]] std::vector<Display> all() const override { return displays; }
};

/// A keyboard whose combinations can be held by others.
class FakeHotKeyService final : public HotKeyService {
public:
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    /// Non-zero: no handler can be installed.
    std::int32_t handlerStatus = 0;
    /// Combinations of other programs; asking for one gives `kTakenStatus`.
    std::set<Combination> taken;
    static constexpr std::int32_t kTakenStatus = -9878;
    HotKeyID lastID;
    /// Has a value on a desktop that gives the keys itself: it decides when the test calls `decide`.
    std::optional<QString> assigned;
    QString use;
    bool isEverywhere = true;

    std::int32_t installHandler(std::function<void()> pressed) override;
    [[nodiscard]] HotKeyResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;

    void installDecisionHandler(std::function<void(std::int32_t status)> decided) override {
        m_decided = std::move(decided);
    }
    [[nodiscard]] std::optional<QString> assignedKeys() const override { return assigned; }
    [[nodiscard]] QString knownUse(std::uint32_t, std::uint32_t) const override { return use; }
    [[nodiscard]] bool reachesEverywhere() const override { return isEverywhere; }
    void decide(std::int32_t status, const QString &keys);

    [[nodiscard]] const std::set<Combination> &held() const { return *m_held; }
    /// The user presses the combination; false when nobody has registered it.
    bool press(std::uint32_t keyCode, std::uint32_t modifiers);

private:
    std::function<void()> m_pressed;
    std::function<void(std::int32_t)> m_decided;
    std::shared_ptr<std::set<Combination>> m_held = std::make_shared<std::set<Combination>>();
};

struct FakeLoginItem final : LoginItem {
    LoginItemStatus currentStatus = LoginItemStatus::notRegistered;
    LoginItemStatus statusAfterRegistering = LoginItemStatus::enabled;
    QString registrationError;
    int registrations = 0;
    int settingsOpened = 0;

    [[nodiscard]] LoginItemStatus status() const override { return currentStatus; }
    [[nodiscard]] QString registerItem() override;
    [[nodiscard]] QString setEnabledByUser(bool isEnabled) override;
    void openSystemSettings() override { ++settingsOpened; }
};

struct FakeMotionPreference final : MotionPreference {
    bool isReduced = false;

    [[nodiscard]] bool prefersReducedMotion() const override { return isReduced; }
};

struct FakeScreenLock final : ScreenLock {
    void draw() { setIsDrawn(true); }
    void open() { setIsDrawn(false); }
};

struct FakeStatusArea final : StatusArea {
    bool isThere = false;

    [[nodiscard]] bool hasAppeared() const override { return isThere; }
};

class FakeWorkspace final : public Workspace {
public:
    static constexpr quint64 kOwnWindow = 1;

    /// Another application's window comes to the front, by the user's doing.
    void bringToFront(const QString &bundleIdentifier, quint64 window);
    /// This program's own window comes to the front.
    void bringSelfToFront() { bringToFront(mainBundleIdentifier(), kOwnWindow); }
    void leaveNobodyInFront() { m_frontmost.reset(); }
    /// The windows that were activated through this service, in order.
    QList<quint64> activated;

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override { return m_frontmost; }
    [[nodiscard]] QString mainBundleIdentifier() const override { return QStringLiteral("tallowby"); }
    void activate(const RunningApplication &application) override;

private:
    std::optional<RunningApplication> m_frontmost;
};

/// Records what was set. Activation puts the program in front of its workspace unless `isActivationRefused`.
class FakePresentation final : public Presentation {
public:
    explicit FakePresentation(FakeWorkspace &workspace)
        : m_workspace(workspace) {}

    PresentationOptions options = kDefaultPresentation;
    ActivationPolicy policy = ActivationPolicy::accessory;
    bool isActivationRefused = false;
    int panelsPrepared = 0;
    int activations = 0;

    [[nodiscard]] PresentationOptions presentationOptions() const override { return options; }
    void setPresentationOptions(PresentationOptions newOptions) override { options = newOptions; }
    [[nodiscard]] ActivationPolicy activationPolicy() const override { return policy; }
    void setActivationPolicy(ActivationPolicy newPolicy) override { policy = newPolicy; }
    void preparePanel(QWindow &) override { ++panelsPrepared; }
    [[nodiscard]] bool showUnseen(QWindow &) override { return false; }
    void hideUnseen(QWindow &) override {}
    void activateIgnoringOtherApps(QWindow &window) override;

private:
    FakeWorkspace &m_workspace;
};

/// A whole desktop that does as tests say.
class FakeDesktop final : public DesktopPlatform {
public:
    FakeAccessibilityTrust trustService;
    FakeAudio audioService;
    FakeDesktopCapture captureService;
    FakeDisplays displayService;
    FakeHotKeyService hotKeyService;
    FakeLoginItem loginItemService;
    FakeMotionPreference motionService;
    FakeScreenLock screenLockService;
    FakeStatusArea statusAreaService;
    FakeVideo videoService;
    FakeWorkspace workspaceService;
    FakePresentation presentationService{workspaceService};

    [[nodiscard]] AccessibilityTrust &accessibilityTrust() override { return trustService; }
    [[nodiscard]] Audio &audio() override { return audioService; }
    [[nodiscard]] DesktopCapture &desktopCapture() override { return captureService; }
    [[nodiscard]] Displays &displays() override { return displayService; }
    [[nodiscard]] HotKeyService &hotKeys() override { return hotKeyService; }
    [[nodiscard]] LoginItem &loginItem() override { return loginItemService; }
    [[nodiscard]] MotionPreference &motionPreference() override { return motionService; }
    [[nodiscard]] Presentation &presentation() override { return presentationService; }
    [[nodiscard]] ScreenLock &screenLock() override { return screenLockService; }
    [[nodiscard]] StatusArea &statusArea() override { return statusAreaService; }
    [[nodiscard]] Video &video() override { return videoService; }
    [[nodiscard]] Workspace &workspace() override { return workspaceService; }
};

} // namespace tallowby::test
