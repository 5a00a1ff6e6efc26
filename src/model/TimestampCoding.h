#pragma once

#include "model/Timestamp.h"
#include "model/json/JsonReading.h"

#include <optional>
#include <string>
#include <string_view>

namespace tallowby {

/// How timestamps stand in a document of records: whoever uses the records chooses.
struct TimestampCoding {
    json::Problem (*read)(json::Value &value, Timestamp &timestamp);
    /// Appends the JSON value; false when the time cannot be written.
    bool (*append)(Timestamp timestamp, std::string &json);
    /// What a value should have been, for the reason of a refusal.
    const char *form;
};

/// The form of the local file: a number, the seconds with fraction since 2001-01-01 00:00:00 UTC.
extern const TimestampCoding kFileTimestamps;

/// The form of what is exchanged with the backend: a string in ISO 8601, such as 2025-01-31T12:00:00.123Z. Written in
/// UTC, cut off at the millisecond, so that a block never looks newer there than it is here. Read with a fraction of
/// any length or none, with `Z` or an offset.
extern const TimestampCoding kWireTimestamps;

/// In UTC, cut off at the second: 2025-01-31T12:00:00Z.
[[nodiscard]] std::string isoSeconds(Timestamp timestamp);
/// The same with the millisecond; none for a year that four digits cannot write.
[[nodiscard]] std::optional<std::string> isoMilliseconds(Timestamp timestamp);
/// None for anything that is no whole date and time with a zone.
[[nodiscard]] std::optional<Timestamp> timestampFromIso(std::string_view text);

} // namespace tallowby
