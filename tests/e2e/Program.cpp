#include "e2e/Program.h"

#include "e2e/Waiting.h"

#include <QFile>

#include <algorithm>

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

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

QByteArrayList Program::numbers(const char *file) const {
    QFile source(QStringLiteral("/proc/%1/%2").arg(m_process.processId()).arg(QLatin1StringView(file)));
    return source.open(QFile::ReadOnly) ? source.readAll().split(' ') : QByteArrayList();
}

double Program::processorSeconds() const {
    // utime and stime; the program's name before them has no blank.
    const QByteArrayList stat = numbers("stat");
    return (stat.value(13).toDouble() + stat.value(14).toDouble()) / double(::sysconf(_SC_CLK_TCK));
}

double Program::residentMiB() const {
    return numbers("statm").value(1).toDouble() * double(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

void Program::send(int signal) {
    ::kill(pid_t(m_process.processId()), signal);
}

void Program::limitFiles(std::optional<std::uint64_t> bytes) {
    const auto process = pid_t(m_process.processId());
    rlimit limit{};
    ::prlimit(process, RLIMIT_FSIZE, nullptr, &limit);
    limit.rlim_cur = bytes ? rlim_t(*bytes) : limit.rlim_max;
    ::prlimit(process, RLIMIT_FSIZE, &limit, nullptr);
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
