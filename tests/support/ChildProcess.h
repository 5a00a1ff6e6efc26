#pragma once

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>

#include <sys/types.h>

namespace tallowby::test {

/// A helper program of a test. It needs no event loop, so that it can be started before there is an application object,
/// and it dies with its starter, even when that crashes.
class ChildProcess {
public:
    ChildProcess() = default;
    /// Starts `arguments[0]`, found through PATH. With a `{fd}` in an argument, that becomes the number of a pipe's
    /// writing end, from which `readLine` reads. What the program prints goes to /dev/null.
    ChildProcess(const QList<QByteArray> &arguments, const QProcessEnvironment &environment);
    ~ChildProcess();
    ChildProcess(ChildProcess &&other) noexcept;
    ChildProcess &operator=(ChildProcess &&other) noexcept;

    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] pid_t pid() const { return m_pid; }
    /// The next line that the program writes to its pipe, without the line break; empty when none comes in time.
    [[nodiscard]] QByteArray readLine(int timeoutMilliseconds);
    /// Asks the program to end, by its process number, and insists when it does not.
    void end();

private:
    pid_t m_pid = -1;
    int m_pipe = -1;
};

} // namespace tallowby::test
