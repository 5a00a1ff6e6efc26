#include "platform/decoding/DrawingReading.h"
#include "platform/decoding/PictureReading.h"
#include "platform/linux/decoding/DecodingMessages.h"
#include "platform/linux/decoding/DecodingSandbox.h"

#include <QCoreApplication>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// The parent's end of the line.
constexpr int kLine = 0;
constexpr int kProcessorSeconds = 5;
/// Behind everything that a person waits for.
constexpr int kNiceness = 10;

bool readWhole(std::span<std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::read(kLine, bytes.data(), bytes.size());
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return false;
        }
        bytes = bytes.subspan(std::size_t(std::max<ssize_t>(count, 0)));
    }
    return true;
}

bool writeWhole(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(kLine, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes = bytes.subspan(std::size_t(std::max<ssize_t>(count, 0)));
    }
    return true;
}

DecodedPicture decode(const DecodingRequest &request) {
    try {
        QByteArray file(qsizetype(request.fileSize), Qt::Uninitialized);
        if (!readWhole(std::as_writable_bytes(std::span(file.data(), request.fileSize)))) {
            ::_exit(EXIT_SUCCESS); // Nobody is there any more.
        }
        DecodedPicture decoded = readPicture(file, request.longestSide);
        if (!decoded.image.isNull()) {
            decoded.image.convertTo(decodedFormat(decoded.image.hasAlphaChannel()));
            if (decoded.image.isNull()) {
                return {.image = {}, .size = {}, .refusal = PictureRefusal::tooMuchMemory};
            }
        }
        return decoded;
    } catch (const std::bad_alloc &) {
        return {.image = {}, .size = {}, .refusal = PictureRefusal::tooMuchMemory};
    }
}

bool answer(const DecodedPicture &decoded) {
    DecodingReply reply;
    reply.refusal = std::uint32_t(decoded.refusal);
    if (!decoded.image.isNull()) {
        reply.wholeWidth = decoded.size.width();
        reply.wholeHeight = decoded.size.height();
        reply.width = decoded.image.width();
        reply.height = decoded.image.height();
        reply.isScalable = decoded.isScalable ? 1 : 0;
        reply.hasAlpha = decoded.image.hasAlphaChannel() ? 1 : 0;
    }
    if (!writeWhole(std::as_bytes(std::span(&reply, 1)))) {
        return false;
    }
    const auto rowSize = std::size_t(reply.width) * kDecodedBytesPerPixel;
    for (int y = 0; y < reply.height; ++y) {
        if (!writeWhole(std::as_bytes(std::span(decoded.image.constScanLine(y), rowSize)))) {
            return false;
        }
    }
    return true;
}

void settle() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::setpriority(PRIO_PROCESS, 0, kNiceness);
    ::close_range(3, ~0U, 0);
    // Whoever runs out of memory, it should be this process that ends.
    if (const int score = ::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC); score >= 0) {
        static_cast<void>(::write(score, "1000", 4));
        ::close(score);
    }
    loadPictureReaders();
    enterDecodingSandbox(fontFolders());
}

int serve() {
    DecodingRequest request;
    while (readWhole(std::as_writable_bytes(std::span(&request, 1)))) {
        if (request.magic != kDecodingMagic || request.fileSize > kMaxPictureFile || request.longestSide < 1 ||
            request.longestSide > kMaxDecodedSide) {
            return EXIT_FAILURE;
        }
        allowProcessorTime(kProcessorSeconds);
        if (!answer(decode(request))) {
            break;
        }
    }
    return EXIT_SUCCESS;
}

} // namespace

std::optional<int> runAsPictureDecoder(int argc, char **argv) {
    if (argc != 2 || std::strcmp(argv[1], kDecodePicturesOption) != 0) {
        return std::nullopt;
    }
    const QCoreApplication application(argc, argv);
    settle();
    // Nothing that was loaded may run on the way out.
    ::_exit(serve());
}

} // namespace tallowby
