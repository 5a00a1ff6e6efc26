#pragma once

#include "support/ChildProcess.h"

#include <QProcessEnvironment>
#include <QString>

namespace tallowby::test {

/// A real input method in the session of a test: IBus or Fcitx with its Korean engine, on the two-set layout, already
/// switched to Korean. Typing "dkssudgktpdy" on it writes 안녕하세요. It is ready when the constructor returns, keeps
/// its files in the session's folders, and ends with this object.
class InputMethodSession {
public:
    enum class Framework { ibus, fcitx };

    /// `environment` has to lead into a session with a message bus. It is changed so that a program started with it
    /// finds the input method.
    InputMethodSession(Framework framework, QProcessEnvironment &environment);

    /// What kept the input method from starting; empty when it runs.
    [[nodiscard]] QString error() const { return m_error; }
    /// Waits until the engine serves the text field that has the keyboard.
    [[nodiscard]] bool hasFocus() const;

private:
    void startIBus();
    void startFcitx();
    /// Writes a file below the session's folder of settings.
    void configure(const QString &path, const QByteArray &lines);
    /// Whether the command ends well and prints exactly this.
    [[nodiscard]] bool answers(const QString &command, const QStringList &arguments, const QByteArray &answer) const;

    Framework m_framework;
    /// For the programs of the input method.
    QProcessEnvironment m_environment;
    QString m_error;
    ChildProcess m_daemon;
};

} // namespace tallowby::test
