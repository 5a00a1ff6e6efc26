#pragma once

#include "platform/desktop/PictureDecoder.h"

#include <QDeadlineTimer>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

#include <sys/types.h>

namespace tallowby {

/// A process in the role of a decoder, which is not trusted: a picture may have broken into it. One thread at a time.
/// It ends with this object, with the thread that started it, and with the program.
class DecodingProcess {
public:
    /// Starts this program in that role. Null when that is not possible.
    [[nodiscard]] static std::unique_ptr<DecodingProcess> start();
    /// Takes over a process and the line to it.
    DecodingProcess(pid_t process, int line);
    ~DecodingProcess();
    DecodingProcess(const DecodingProcess &) = delete;
    DecodingProcess &operator=(const DecodingProcess &) = delete;

    enum class Failure {
        /// It has ended.
        died,
        /// It was ended because it took too long.
        tooSlow,
        /// It answered as no honest decoder does.
        lied,
        stopped,
    };
    /// Waits until `deadline`, or until `stopSignal` can be read. After a failure, of which `failure` tells, the
    /// process is of no more use.
    [[nodiscard]] std::optional<DecodedPicture> decode(const QByteArray &file, int longestSide, QDeadlineTimer deadline,
                                                       int stopSignal);
    [[nodiscard]] Failure failure() const { return m_failure; }
    /// Counts the pictures that it was asked for.
    [[nodiscard]] int requestCount() const { return m_requestCount; }

private:
    enum class Direction { send, receive };
    [[nodiscard]] bool transfer(std::span<std::byte> bytes, Direction direction);
    [[nodiscard]] bool awaitLine(Direction direction);
    [[nodiscard]] bool hasSpoken() const;
    void examineDeath();
    bool fail(Failure failure);

    pid_t m_process;
    int m_line;
    int m_requestCount = 0;
    QDeadlineTimer m_deadline;
    int m_stopSignal = -1;
    Failure m_failure = Failure::died;
};

} // namespace tallowby
