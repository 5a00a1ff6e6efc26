#include "platform/linux/decoding/DecodingProcess.h"

#include "platform/linux/decoding/DecodingMessages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowby {

namespace {

constexpr char kThisProgram[] = "/proc/self/exe";

/// What a decoder needs to find libraries and fonts; the rest, which has keys and addresses in it, is none of its
/// business.
constexpr std::array<std::string_view, 12> kPassedOn{"PATH=",
                                                     "HOME=",
                                                     "LANG=",
                                                     "LC_",
                                                     "XDG_DATA_",
                                                     "XDG_CACHE_HOME=",
                                                     "XDG_CONFIG_HOME=",
                                                     "LD_LIBRARY_PATH=",
                                                     "QT_PLUGIN_PATH=",
                                                     "FONTCONFIG_",
                                                     "ASAN_OPTIONS=",
                                                     "TSAN_OPTIONS="};

std::vector<char *> decoderEnvironment() {
    std::vector<char *> environment;
    for (char **each = environ; *each; ++each) {
        if (std::ranges::any_of(kPassedOn,
                                [each](std::string_view name) { return std::string_view(*each).starts_with(name); })) {
            environment.push_back(*each);
        }
    }
    environment.push_back(nullptr);
    return environment;
}

/// Starts this program with `line` as its standard input, and nothing else of ours. -1 when that is not possible.
pid_t startDecoder(int line) {
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_adddup2(&files, line, STDIN_FILENO);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t all;
    ::sigfillset(&all);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    // A group of its own: Ctrl+C in a terminal is for the program.
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    std::string name = "tallowby";
    std::string option = kDecodePicturesOption;
    char *arguments[] = {name.data(), option.data(), nullptr};
    pid_t process = -1;
    if (::posix_spawn(&process, kThisProgram, &files, &attributes, arguments, decoderEnvironment().data()) != 0) {
        process = -1;
    }
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return process;
}

} // namespace

std::unique_ptr<DecodingProcess> DecodingProcess::start() {
    int line[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, line) != 0) {
        return nullptr;
    }
    const pid_t process = startDecoder(line[1]);
    ::close(line[1]);
    if (process < 0) {
        ::close(line[0]);
        return nullptr;
    }
    return std::make_unique<DecodingProcess>(process, line[0]);
}

DecodingProcess::DecodingProcess(pid_t process, int line)
    : m_process(process)
    , m_line(line) {}

DecodingProcess::~DecodingProcess() {
    ::close(m_line);
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

bool DecodingProcess::fail(Failure failure) {
    m_failure = failure;
    return false;
}

/// A limit on the time it may compute ends it as well as the clock.
void DecodingProcess::examineDeath() {
    m_failure = Failure::died;
    ::kill(m_process, SIGKILL); // It may only have closed the line.
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0) {
        if (errno != EINTR) {
            return;
        }
    }
    m_process = -1;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) {
        m_failure = Failure::tooSlow;
    }
}

bool DecodingProcess::awaitLine(Direction direction) {
    std::array<pollfd, 2> waiting{
        pollfd{.fd = m_line, .events = short(direction == Direction::send ? POLLOUT : POLLIN), .revents = 0},
        pollfd{.fd = m_stopSignal, .events = POLLIN, .revents = 0}};
    while (true) {
        if (m_deadline.hasExpired()) {
            return fail(Failure::tooSlow);
        }
        // Rounded up, so that it does not spin through the last millisecond.
        const int count = ::poll(waiting.data(), waiting.size(), int(m_deadline.remainingTime()) + 1);
        if (count < 0 && errno != EINTR) {
            return fail(Failure::died);
        }
        if (count > 0) {
            return waiting[1].revents != 0 ? fail(Failure::stopped) : true;
        }
    }
}

bool DecodingProcess::transfer(std::span<std::byte> bytes, Direction direction) {
    while (!bytes.empty()) {
        if (!awaitLine(direction)) {
            return false;
        }
        const ssize_t count = direction == Direction::send
                                  ? ::send(m_line, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT)
                                  : ::recv(m_line, bytes.data(), bytes.size(), MSG_DONTWAIT);
        const bool isInterrupted = count < 0 && (errno == EINTR || errno == EAGAIN);
        if (count == 0 || (count < 0 && !isInterrupted)) {
            examineDeath();
            return false;
        }
        bytes = bytes.subspan(std::size_t(std::max<ssize_t>(count, 0)));
    }
    return true;
}

bool DecodingProcess::hasSpoken() const {
    pollfd line{.fd = m_line, .events = POLLIN, .revents = 0};
    return ::poll(&line, 1, 0) > 0;
}

std::optional<DecodedPicture> DecodingProcess::decode(const QByteArray &file, int longestSide, QDeadlineTimer deadline,
                                                      int stopSignal) {
    m_deadline = deadline;
    m_stopSignal = stopSignal;
    ++m_requestCount;
    if (hasSpoken()) {
        // Words that nobody asked for would be taken for the answer, or it has ended.
        fail(Failure::died);
        return std::nullopt;
    }
    DecodingRequest request{
        .magic = kDecodingMagic, .fileSize = std::uint32_t(file.size()), .longestSide = std::int32_t(longestSide)};
    // Sending changes nothing of the file: only receiving writes to the bytes.
    const std::span fileBytes(reinterpret_cast<std::byte *>(const_cast<char *>(file.constData())),
                              std::size_t(file.size()));
    DecodingReply reply;
    if (!transfer(std::as_writable_bytes(std::span(&request, 1)), Direction::send) ||
        !transfer(fileBytes, Direction::send) ||
        !transfer(std::as_writable_bytes(std::span(&reply, 1)), Direction::receive)) {
        return std::nullopt;
    }
    if (!isPlausible(reply, longestSide)) {
        fail(Failure::lied);
        return std::nullopt;
    }
    if (reply.refusal != 0) {
        return DecodedPicture{.image = {}, .size = {}, .refusal = PictureRefusal(reply.refusal)};
    }
    QImage image(reply.width, reply.height, decodedFormat(reply.hasAlpha == 1));
    if (image.isNull()) {
        return DecodedPicture{.image = {}, .size = {}, .refusal = PictureRefusal::tooMuchMemory};
    }
    // Four bytes a pixel leave no gaps between the rows.
    if (!transfer(std::as_writable_bytes(std::span(image.bits(), std::size_t(image.sizeInBytes()))),
                  Direction::receive)) {
        return std::nullopt;
    }
    return DecodedPicture{.image = std::move(image),
                          .size = {reply.wholeWidth, reply.wholeHeight},
                          .refusal = PictureRefusal::none,
                          .isScalable = reply.isScalable == 1};
}

} // namespace tallowby
