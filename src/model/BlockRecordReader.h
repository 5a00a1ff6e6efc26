#pragma once

#include "model/BlockDTO.h"

#include <functional>
#include <memory>
#include <optional>

namespace tallowby {

struct TimestampCoding;

/// Bytes to parse. The parser looks a little beyond the end, so there is always zeroed room.
class JsonBuffer {
public:
    static constexpr std::size_t kPadding = 64;

    explicit JsonBuffer(std::size_t size);

    [[nodiscard]] char *data() { return m_bytes.get(); }
    [[nodiscard]] const char *data() const { return m_bytes.get(); }
    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] std::size_t capacity() const { return m_size + kPadding; }

private:
    std::size_t m_size;
    std::unique_ptr<char[]> m_bytes;
};

/// How the embedding stands in a document. A database hands out its vectors as texts that hold the array.
enum class EmbeddingForm { numbers, numbersOrText };

/// Reads documents that are one array of records. Anything wrong refuses the document whole: a key that is missing,
/// stands twice or has a value of another type, a number that is not finite, bad JSON or UTF-8, nesting beyond all use.
/// Unknown keys are checked and left out. One thread at a time.
class BlockRecordReader {
public:
    explicit BlockRecordReader(const TimestampCoding &timestamps, EmbeddingForm embeddings = EmbeddingForm::numbers);
    ~BlockRecordReader();
    BlockRecordReader(const BlockRecordReader &) = delete;
    BlockRecordReader &operator=(const BlockRecordReader &) = delete;

    /// Hands over the records in order. Returns the reason of a refusal, which names the record, counted from 0, and
    /// the key; what was handed over before it is to be dropped.
    [[nodiscard]] std::optional<QString> read(const JsonBuffer &document, const std::function<void(BlockDTO)> &take);

private:
    class Session;
    std::unique_ptr<Session> m_session;
};

} // namespace tallowby
