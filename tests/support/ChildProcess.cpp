#include "support/ChildProcess.h"

#include <QElapsedTimer>

#include <cerrno>
#include <csignal>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowby::test {

namespace {

constexpr int kEndTimeoutMilliseconds = 3000;

std::vector<char *> pointersTo(QList<QByteArray> &texts) {
    std::vector<char *> pointers;
    for (QByteArray &text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ChildProcess::ChildProcess(const QList<QByteArray> &arguments, const QProcessEnvironment &environment) {
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0) {
        return;
    }
    // Everything that allocates is made before the fork: in the child only async-signal-safe calls are allowed.
    QList<QByteArray> program = arguments;
    for (QByteArray &argument : program) {
        argument.replace("{fd}", QByteArray::number(pipeEnds[1]));
    }
    QList<QByteArray> variables;
    for (const QString &variable : environment.toStringList()) {
        variables << variable.toLocal8Bit();
    }
    const std::vector<char *> argv = pointersTo(program);
    const std::vector<char *> envp = pointersTo(variables);
    const pid_t parent = ::getpid();

    m_pid = ::fork();
    if (m_pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent) {
            ::_exit(127);
        }
        ::fcntl(pipeEnds[1], F_SETFD, 0);
        const int null = ::open("/dev/null", O_RDWR);
        ::dup2(null, STDIN_FILENO);
        ::dup2(null, STDOUT_FILENO);
        ::dup2(null, STDERR_FILENO);
        ::execvpe(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
    ::close(pipeEnds[1]);
    m_pipe = pipeEnds[0];
}

ChildProcess::~ChildProcess() {
    end();
}

ChildProcess::ChildProcess(ChildProcess &&other) noexcept
    : m_pid(std::exchange(other.m_pid, -1))
    , m_pipe(std::exchange(other.m_pipe, -1)) {}

ChildProcess &ChildProcess::operator=(ChildProcess &&other) noexcept {
    if (this != &other) {
        end();
        m_pid = std::exchange(other.m_pid, -1);
        m_pipe = std::exchange(other.m_pipe, -1);
    }
    return *this;
}

bool ChildProcess::isRunning() const {
    siginfo_t state{};
    return m_pid > 0 && ::waitid(P_PID, id_t(m_pid), &state, WEXITED | WNOHANG | WNOWAIT) == 0 && state.si_pid == 0;
}

QByteArray ChildProcess::readLine(int timeoutMilliseconds) {
    QElapsedTimer elapsed;
    elapsed.start();
    QByteArray line;
    pollfd readable{m_pipe, POLLIN, 0};
    for (;;) {
        const int remaining = timeoutMilliseconds - int(elapsed.elapsed());
        char byte = 0;
        if (remaining <= 0 || ::poll(&readable, 1, remaining) <= 0 || ::read(m_pipe, &byte, 1) != 1) {
            return {};
        }
        if (byte == '\n') {
            return line;
        }
        line += byte;
    }
}

void ChildProcess::end() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGTERM);
        const int ended = int(::syscall(SYS_pidfd_open, m_pid, 0));
        pollfd readable{ended, POLLIN, 0};
        if (ended < 0 || ::poll(&readable, 1, kEndTimeoutMilliseconds) != 1) {
            ::kill(m_pid, SIGKILL);
        }
        ::waitpid(m_pid, nullptr, 0);
        ::close(ended);
        m_pid = -1;
    }
    if (m_pipe >= 0) {
        ::close(m_pipe);
        m_pipe = -1;
    }
}

} // namespace tallowby::test
