#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

namespace tallowby::test {

/// A desktop that gives keys and cameras to programs, on a bus of the test's own: in the place of the desktop portal,
/// or behind the real one as its backend. It answers on a thread of its own, so that a program under test may wait for
/// it. Main thread only.
class ShortcutsDesk {
public:
    enum class Role {
        portal, ///< org.freedesktop.portal.Desktop itself, with the registry of programs outside a sandbox
        backend ///< what the real portal asks
    };

    struct Script {
        /// Of the interface; 0 for a portal without it.
        std::uint32_t version = 2;
        /// What the user says when asked: 0 yes, 1 no, 2 the dialogue went away.
        std::uint32_t status = 0;
        /// Whether what was asked for is among what was bound.
        bool isBound = true;
        QString keys = QStringLiteral("Alt+Space");
    };

    ShortcutsDesk(const QString &address, Role role, Script script);
    /// Leaves the bus.
    ~ShortcutsDesk();
    ShortcutsDesk(const ShortcutsDesk &) = delete;
    ShortcutsDesk &operator=(const ShortcutsDesk &) = delete;

    /// As the D-Bus name of the backend's description says.
    static const QString kBackendName;

    void setStatus(std::uint32_t status);
    /// What it was asked so far, for example "BindShortcuts toggle ALT+space".
    [[nodiscard]] QStringList calls() const;
    /// Of the program that asked for a session last; a backend is told.
    [[nodiscard]] QString session() const;

    void press(const QString &activationToken = {});
    void release();
    /// The same for a session and a shortcut that may be nobody's.
    void press(const QString &session, const QString &shortcut);
    void giveOtherKeys(const QString &keys);
    void endSession();

private:
    class Object;
    struct Life;

    std::unique_ptr<Life> m_life;
};

/// The system's own desktop portal, with a `ShortcutsDesk` as the only backend behind it.
class RealPortal {
public:
    /// Starts it in that session.
    explicit RealPortal(const QProcessEnvironment &session);

    /// Ends it, as a crash would.
    void end() { m_process.end(); }

private:
    TemporaryFolder m_folder;
    ChildProcess m_process;
};

} // namespace tallowby::test
