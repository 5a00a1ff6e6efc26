#include "storage/file/BlockFileReader.h"

#include "model/BlockRecordReader.h"
#include "model/TimestampCoding.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <future>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// Below this a second thread costs more than it saves.
constexpr std::size_t kWorthSplitting = std::size_t{4} << 20;
/// How far from the middle a place to split is looked for; a few hundred ordinary records.
constexpr std::size_t kSplitWindow = std::size_t{256} << 10;
/// The end of one record and the start of the next, as this program writes them: what comes before and after the id.
/// Items in a payload often look like the first part; nothing but malice looks like both.
constexpr std::string_view kSeamStart = R"(},{"id":")";
constexpr std::size_t kIdLength = 36;
constexpr std::string_view kSeamEnd = R"(","user_id":")";

class Descriptor {
public:
    explicit Descriptor(const QString &path)
        // A pipe in place of the file must not keep the program waiting for someone to write into it.
        : m_value(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~Descriptor() {
        if (m_value >= 0) {
            ::close(m_value);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] int value() const { return m_value; }

private:
    int m_value;
};

struct Range {
    std::size_t begin;
    std::size_t end;
};

FileProblem failure(const QString &step) {
    const int cause = errno;
    return {step + u": " + qt_error_string(cause), cause};
}

/// Fills `[into, into + range length)`; false with errno set when the file cannot be read or is shorter than it was.
bool readRange(int descriptor, Range range, char *into) {
    while (range.begin < range.end) {
        const ssize_t count = ::pread(descriptor, into, range.end - range.begin, off_t(range.begin));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            errno = count == 0 ? EIO : errno;
            return false;
        }
        into += count;
        range.begin += std::size_t(count);
    }
    return true;
}

/// Decodes one array: `before`, the bytes of the range and `after` in a row.
BlockFileContent decode(int descriptor, DeletedRecords deleted, Range range, std::string_view before,
                        std::string_view after) {
    const std::size_t length = range.end - range.begin;
    JsonBuffer document(before.size() + length + after.size());
    before.copy(document.data(), before.size());
    if (!readRange(descriptor, range, document.data() + before.size())) {
        return failure(QStringLiteral("cannot read the file"));
    }
    after.copy(document.data() + before.size() + length, after.size());

    LoadedBlocks loaded;
    const auto keep = [&loaded, deleted](BlockDTO record) {
        if (record.deletedAt && deleted == DeletedRecords::leaveOut) {
            ++loaded.purgedCount;
        } else {
            loaded.records.push_back(std::move(record).toFields());
        }
    };
    if (auto refusal = BlockRecordReader(kFileTimestamps).read(document, keep)) {
        return UnreadableBlockFile{*std::move(refusal), {}};
    }
    return loaded;
}

/// A comma near the middle that looks like one between two records.
std::optional<std::size_t> likelySeam(int descriptor, std::size_t size) {
    const Range window{size / 2, size / 2 + kSplitWindow};
    std::string bytes(kSplitWindow, '\0');
    if (!readRange(descriptor, window, bytes.data())) {
        return std::nullopt;
    }
    const std::string_view text = bytes;
    for (auto found = text.find(kSeamStart); found != text.npos; found = text.find(kSeamStart, found + 1)) {
        if (text.substr(std::min(found + kSeamStart.size() + kIdLength, text.size())).starts_with(kSeamEnd)) {
            return window.begin + found + 1;
        }
    }
    return std::nullopt;
}

/// Both halves at once. When each of "[ … first half ]" and "[second half …" decodes as an array of its own, then the
/// comma between them did stand between two records and the file is the one array of them all; when the guess was
/// wrong, one of them fails and nothing is returned.
std::optional<LoadedBlocks> decodeHalves(int descriptor, DeletedRecords deleted, std::size_t size) {
    const auto seam = likelySeam(descriptor, size);
    if (!seam) {
        return std::nullopt;
    }
    auto secondHalf = std::async(std::launch::async, [&] {
        return decode(descriptor, deleted, {*seam + 1, size}, "[", "");
    });
    auto first = decode(descriptor, deleted, {0, *seam}, "", "]");
    auto second = secondHalf.get();
    auto *loaded = std::get_if<LoadedBlocks>(&first);
    auto *rest = std::get_if<LoadedBlocks>(&second);
    if (!loaded || !rest) {
        return std::nullopt;
    }
    loaded->records.insert(loaded->records.end(), std::move_iterator(rest->records.begin()),
                           std::move_iterator(rest->records.end()));
    loaded->purgedCount += rest->purgedCount;
    return std::move(*loaded);
}

BlockFileContent read(int descriptor, const struct stat &status, DeletedRecords deleted) {
    if (!S_ISREG(status.st_mode)) {
        return UnreadableBlockFile{QStringLiteral("it is no ordinary file"), {}};
    }
    const auto size = std::size_t(status.st_size);
    if (size >= kWorthSplitting && std::thread::hardware_concurrency() > 1) {
        if (auto loaded = decodeHalves(descriptor, deleted, size)) {
            return *std::move(loaded);
        }
    }
    return decode(descriptor, deleted, {0, size}, "", "");
}

} // namespace

BlockFileContent readBlockFile(const QString &path, DeletedRecords deleted) {
    const Descriptor file(path);
    if (file.value() < 0) {
        // Only a file that is certainly not there may be written anew.
        return errno == ENOENT ? BlockFileContent() : failure(QStringLiteral("cannot open the file"));
    }
    struct stat status {};
    if (::fstat(file.value(), &status) < 0) {
        return failure(QStringLiteral("cannot read the file"));
    }
    BlockFileContent content = read(file.value(), status, deleted);
    if (auto *loaded = std::get_if<LoadedBlocks>(&content)) {
        loaded->identity = FileIdentity(status);
    } else if (auto *unreadable = std::get_if<UnreadableBlockFile>(&content)) {
        unreadable->identity = FileIdentity(status);
    }
    return content;
}

} // namespace tallowby
