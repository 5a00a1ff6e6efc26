#include "e2e/input/InputMethodSession.h"

#include "e2e/Waiting.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace tallowby::test {

namespace {

/// A command that asks a daemon which is only starting may never come back.
constexpr int kAnswerTimeoutMilliseconds = 3000;

constexpr char kIBusSettings[] = R"([org/freedesktop/ibus/engine/hangul]
initial-input-mode='hangul'
hangul-keyboard='2'
off-keys=''
[org/freedesktop/ibus/general]
use-system-keyboard-layout=true
)";

constexpr char kFcitxProfile[] = R"([Groups/0]
Name=Default
Default Layout=us
DefaultIM=hangul
[Groups/0/Items/0]
Name=hangul
Layout=us
[GroupOrder]
0=Default
)";

} // namespace

InputMethodSession::InputMethodSession(Framework framework, QProcessEnvironment &environment)
    : m_framework(framework)
    , m_environment(environment) {
    if (framework == Framework::ibus) {
        environment.insert(QStringLiteral("QT_IM_MODULE"), QStringLiteral("ibus"));
        startIBus();
    } else {
        environment.insert(QStringLiteral("QT_IM_MODULE"), QStringLiteral("fcitx"));
        startFcitx();
    }
}

void InputMethodSession::startIBus() {
    configure(QStringLiteral("glib-2.0/settings/keyfile"), kIBusSettings);
    m_environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("keyfile"));
    m_daemon = ChildProcess({"ibus-daemon", "--panel=disable", "--emoji-extension=disable"}, m_environment);
    // The first command sets the engine for every text field, the second asks for it.
    const bool isReady = eventually([this] {
        return answers(QStringLiteral("ibus"), {QStringLiteral("engine"), QStringLiteral("hangul")}, {}) &&
               answers(QStringLiteral("ibus"), {QStringLiteral("engine")}, "hangul\n");
    });
    if (!isReady) {
        m_error = QStringLiteral("IBus did not start with its Korean engine");
    }
}

void InputMethodSession::startFcitx() {
    configure(QStringLiteral("fcitx5/profile"), kFcitxProfile);
    m_daemon =
        ChildProcess({"fcitx5", "--keep", "--disable=classicui,clipboard,notifications,unicode,xim"}, m_environment);
    if (!eventually([this] { return answers(QStringLiteral("fcitx5-remote"), {QStringLiteral("-q")}, "Default\n"); })) {
        m_error = QStringLiteral("Fcitx did not start");
    }
}

bool InputMethodSession::hasFocus() const {
    return m_framework == Framework::ibus ||
           eventually([this] { return answers(QStringLiteral("fcitx5-remote"), {QStringLiteral("-n")}, "hangul\n"); });
}

void InputMethodSession::configure(const QString &path, const QByteArray &lines) {
    QFile file(m_environment.value(QStringLiteral("XDG_CONFIG_HOME")) + u'/' + path);
    QDir().mkpath(QFileInfo(file).path());
    if (!file.open(QFile::WriteOnly) || file.write(lines) != lines.size()) {
        m_error = QStringLiteral("The settings of the input method were not written");
    }
}

bool InputMethodSession::answers(const QString &command, const QStringList &arguments, const QByteArray &answer) const {
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(command, arguments, QProcess::ReadOnly);
    if (!process.waitForFinished(kAnswerTimeoutMilliseconds)) {
        process.kill();
        process.waitForFinished(kAnswerTimeoutMilliseconds);
        return false;
    }
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 &&
           process.readAllStandardOutput() == answer;
}

} // namespace tallowby::test
