#pragma once

#include "model/Timestamp.h"
#include "model/json/JsonReading.h"

#include <string>

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

} // namespace tallowby
