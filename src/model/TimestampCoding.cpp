#include "model/TimestampCoding.h"

#include "model/json/JsonText.h"

namespace tallowby {

const TimestampCoding kFileTimestamps{
    .read = [](json::Value &value,
               Timestamp &timestamp) { return json::readDouble(value, timestamp.secondsSinceReference); },
    .append =
        [](Timestamp timestamp, std::string &json) {
            const JsonNumberText text(timestamp.secondsSinceReference);
            json.append(text.view());
            return !text.view().empty();
        },
    .form = "a number of seconds",
};

} // namespace tallowby
