#include "support/FakeDesktop.h"

namespace tallowby::test {

namespace {

struct FakeRegistration final : HotKeyRegistration {
    std::weak_ptr<std::set<FakeHotKeyService::Combination>> held;
    FakeHotKeyService::Combination combination;

    ~FakeRegistration() override {
        if (const auto alive = held.lock()) {
            alive->erase(combination);
        }
    }
};

} // namespace

QImage FakeDesktopCapture::capture(const Display &display, int reduction) {
    ++captures;
    return picture.isNull() ? picture : picture.scaled(display.frame.size() / reduction);
}

std::int32_t FakeHotKeyService::installHandler(std::function<void()> pressed) {
    if (handlerStatus == 0) {
        m_pressed = std::move(pressed);
    }
    return handlerStatus;
}

HotKeyResult FakeHotKeyService::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) {
    const Combination combination{keyCode, modifiers};
    if (taken.contains(combination) || !m_held->insert(combination).second) {
        return {kTakenStatus, nullptr};
    }
    lastID = id;
    auto registration = std::make_unique<FakeRegistration>();
    registration->held = m_held;
    registration->combination = combination;
    return {assigned ? kHotKeyUndecided : 0, std::move(registration)};
}

void FakeHotKeyService::decide(std::int32_t status, const QString &keys) {
    assigned = keys;
    m_decided(status);
}

bool FakeHotKeyService::press(std::uint32_t keyCode, std::uint32_t modifiers) {
    if (!m_pressed || !m_held->contains({keyCode, modifiers})) {
        return false;
    }
    m_pressed();
    return true;
}

QString FakeLoginItem::registerItem() {
    ++registrations;
    if (registrationError.isEmpty()) {
        currentStatus = statusAfterRegistering;
    }
    return registrationError;
}

QString FakeLoginItem::setEnabledByUser(bool isEnabled) {
    if (registrationError.isEmpty()) {
        currentStatus = isEnabled ? statusAfterRegistering : LoginItemStatus::requiresApproval;
    }
    return registrationError;
}

void FakeWorkspace::bringToFront(const QString &bundleIdentifier, quint64 window) {
    m_frontmost = RunningApplication{bundleIdentifier, window};
    Q_EMIT applicationActivated(*m_frontmost);
}

void FakeWorkspace::activate(const RunningApplication &application) {
    activated << application.window;
    bringToFront(application.bundleIdentifier, application.window);
}

void FakePresentation::activateIgnoringOtherApps(QWindow &) {
    ++activations;
    if (!isActivationRefused) {
        m_workspace.bringSelfToFront();
    }
}

} // namespace tallowby::test
