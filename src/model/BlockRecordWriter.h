#pragma once

#include "model/BlockDTO.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>

namespace tallowby {

struct TimestampCoding;

/// Writes one array of records, or a single record, as compact JSON, keys in the declared order, absent optional fields
/// left out. The text gathers in a buffer that its user empties as it grows. One thread at a time.
class BlockRecordWriter {
public:
    /// Leaves out the keys that are named.
    explicit BlockRecordWriter(const TimestampCoding &timestamps, std::initializer_list<RecordKey> leftOut = {});
    ~BlockRecordWriter();
    BlockRecordWriter(const BlockRecordWriter &) = delete;
    BlockRecordWriter &operator=(const BlockRecordWriter &) = delete;

    void startArray();
    /// Returns the reason when a field cannot be written, which names the key; the text is then worth nothing.
    [[nodiscard]] std::optional<QString> write(const BlockFields &fields);
    void endArray();

    /// What was written since the last `clearText`.
    [[nodiscard]] std::string_view text() const;
    void clearText();

private:
    class Session;
    std::unique_ptr<Session> m_session;
};

} // namespace tallowby
