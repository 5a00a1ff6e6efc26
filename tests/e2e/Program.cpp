#include "e2e/Program.h"

#include "e2e/Waiting.h"

#include <algorithm>

#include <signal.h>

namespace tallowby::test {

namespace {

constexpr int kPatienceMilliseconds = int(std::chrono::milliseconds(kPatience).count());

} // namespace

Program::Program(const QProcessEnvironment &environment, const QStringList &arguments) {
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral(TALLOWBY_PROGRAM), arguments, QProcess::ReadOnly);
    m_process.waitForStarted(kPatienceMilliseconds);
}

Program::~Program() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(kPatienceMilliseconds);
    }
}

bool Program::says(QStringView part) {
    return eventually([&] {
        read();
        const auto line = std::find_if(m_lines.cbegin() + m_nextLine, m_lines.cend(),
                                       [part](const QString &l) { return l.contains(part); });
        if (line == m_lines.cend()) {
            return false;
        }
        m_nextLine = line - m_lines.cbegin() + 1;
        return true;
    });
}

bool Program::hasSaid(QStringView part) {
    read();
    return std::ranges::any_of(m_lines, [part](const QString &line) { return line.contains(part); });
}

QString Program::output() {
    read();
    return m_lines.join(u'\n');
}

void Program::send(int signal) {
    ::kill(pid_t(m_process.processId()), signal);
}

int Program::exitCode() {
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(kPatienceMilliseconds);
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void Program::read() {
    m_process.waitForReadyRead(0);
    m_unfinishedLine += m_process.readAll();
    for (qsizetype end = m_unfinishedLine.indexOf('\n'); end >= 0; end = m_unfinishedLine.indexOf('\n')) {
        m_lines << QString::fromUtf8(m_unfinishedLine.left(end));
        m_unfinishedLine.remove(0, end + 1);
    }
}

} // namespace tallowby::test
