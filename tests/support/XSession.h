#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <QProcessEnvironment>
#include <QSize>
#include <QString>

namespace tallowby::test {

/// A desktop of a test's own: an X server on a free display and, if wanted, a window manager, a compositor and a
/// message bus. It is ready when the constructor returns, changes nothing in this process, and ends its programs by
/// their process numbers when it dies.
///
/// A test that starts the real program hands it `environment()`. A test that uses the desktop in its own process starts
/// the session in main(), before the application object, and calls `adoptEnvironment` (see XTestMain.cpp).
class XSession {
public:
    struct Options {
        QSize screenSize{1280, 800};
        /// openbox, without any key of its own.
        bool windowManager = false;
        /// picom.
        bool compositor = false;
        /// A session bus that starts no services.
        bool messageBus = false;
        /// For the X server, as in {"-extension", "MIT-SHM"}, which leaves an extension out.
        QList<QByteArray> serverArguments = {};
    };

    explicit XSession(const Options &options);
    ~XSession();
    XSession(const XSession &) = delete;
    XSession &operator=(const XSession &) = delete;

    /// What kept the session from starting; empty when it runs.
    [[nodiscard]] QString error() const { return m_error; }
    /// As in DISPLAY, for example ":42".
    [[nodiscard]] QString display() const { return m_display; }
    /// The variables that lead a program into this session, and only those: DISPLAY, QT_QPA_PLATFORM, the bus address
    /// (one that leads nowhere without a bus) and private XDG folders. Insert it into the environment of a program.
    [[nodiscard]] QProcessEnvironment environment() const { return m_environment; }
    /// Puts `environment()` into this process.
    void adoptEnvironment();
    /// The session whose environment this process has adopted.
    [[nodiscard]] static XSession &adopted();

    /// A window manager and a compositor may come and go while the session runs.
    void startWindowManager();
    void endWindowManager();
    void startCompositor();
    void endCompositor() { m_compositor.end(); }

private:
    void startServer(const Options &options);
    void startMessageBus();
    void fail(const QString &what);

    TemporaryFolder m_folder;
    QString m_error;
    QString m_display;
    QProcessEnvironment m_environment;
    // In order of their dependence, so that the server goes last.
    ChildProcess m_server;
    ChildProcess m_messageBus;
    ChildProcess m_windowManager;
    ChildProcess m_compositor;
};

} // namespace tallowby::test
