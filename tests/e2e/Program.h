#pragma once

#include <QProcess>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace tallowby::test {

/// One run of the built program, and what it says.
class Program {
public:
    Program(const QProcessEnvironment &environment, const QStringList &arguments = {});
    /// Ends a program that still runs.
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Waits for a line that contains `part`, after the last one that was waited for.
    [[nodiscard]] bool says(QStringView part);
    /// Whether a line so far contains `part`.
    [[nodiscard]] bool hasSaid(QStringView part);
    /// Everything so far, for the message of a failure.
    [[nodiscard]] QString output();

    /// Of all its threads, since it began.
    [[nodiscard]] double processorSeconds() const;
    [[nodiscard]] double residentMiB() const;

    void send(int signal);
    /// From now on no file of the program can grow beyond that, as on a disk that is full; none lifts it.
    void limitFiles(std::optional<std::uint64_t> bytes);
    /// Waits for its end. The exit code, or -1 when it did not end or crashed.
    [[nodiscard]] int exitCode();

private:
    void read();
    [[nodiscard]] QByteArrayList numbers(const char *file) const;

    QProcess m_process;
    QByteArray m_unfinishedLine;
    QStringList m_lines;
    qsizetype m_nextLine = 0;
};

} // namespace tallowby::test
