#include "model/TimestampCoding.h"

#include "model/json/JsonText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace tallowby {

namespace {

using namespace std::chrono;

/// 0001-01-01 and the end of 9999, in seconds since the reference date: what four digits of a year can say.
constexpr double kFirstSecond = -63'113'904'000;
constexpr double kLastSecond = 252'423'993'600;

struct CivilTime {
    year_month_day date;
    hh_mm_ss<milliseconds> time;
};

std::optional<CivilTime> civilTime(Timestamp timestamp) {
    if (!(timestamp.secondsSinceReference >= kFirstSecond && timestamp.secondsSinceReference < kLastSecond)) {
        return std::nullopt;
    }
    // Through microseconds: 0.123 s has no exact double, and what was read as .123 is to be written as .123 again.
    const microseconds precise(std::llround(timestamp.secondsSinceReference * 1e6));
    const sys_time<milliseconds> time(floor<milliseconds>(precise) + Timestamp::kReferenceDate);
    const sys_days day = floor<days>(time);
    return CivilTime{day, hh_mm_ss(time - day)};
}

std::string written(const CivilTime &civil, bool withMilliseconds) {
    std::array<char, 40> text;
    int length =
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", int(civil.date.year()),
                      unsigned(civil.date.month()), unsigned(civil.date.day()), int(civil.time.hours().count()),
                      int(civil.time.minutes().count()), int(civil.time.seconds().count()));
    if (withMilliseconds) {
        length += std::snprintf(text.data() + length, text.size() - std::size_t(length), ".%03d",
                                int(civil.time.subseconds().count()));
    }
    return std::string(text.data(), std::size_t(length)) + 'Z';
}

/// Takes the parts of a text from its front.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text) {}

    [[nodiscard]] bool isAtEnd() const { return m_rest.empty(); }
    [[nodiscard]] char front() const { return m_rest.empty() ? '\0' : m_rest.front(); }

    bool take(char character) {
        const bool isThere = front() == character;
        m_rest.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    /// Exactly so many digits.
    std::optional<int> number(std::size_t digits) {
        int value = 0;
        const std::string_view text = m_rest.substr(0, digits);
        if (text.size() != digits || !std::ranges::all_of(text, isDigit)) {
            return std::nullopt;
        }
        std::from_chars(text.data(), text.data() + text.size(), value);
        m_rest.remove_prefix(digits);
        return value;
    }

    /// What follows a decimal point: at least one digit.
    std::optional<double> fraction() {
        const auto end = std::ranges::find_if_not(m_rest, isDigit);
        const std::string digits = "0." + std::string(m_rest.begin(), end);
        if (end == m_rest.begin()) {
            return std::nullopt;
        }
        double value = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), value);
        m_rest.remove_prefix(std::size_t(end - m_rest.begin()));
        return value;
    }

private:
    static bool isDigit(char character) { return character >= '0' && character <= '9'; }

    std::string_view m_rest;
};

std::optional<minutes> zone(Scanner &scanner) {
    if (scanner.take('Z') || scanner.take('z')) {
        return minutes(0);
    }
    const int sign = scanner.front() == '-' ? -1 : 1;
    if (!scanner.take('+') && !scanner.take('-')) {
        return std::nullopt;
    }
    const auto hour = scanner.number(2);
    const bool hasMinutes = hour && !scanner.isAtEnd();
    if (hasMinutes) {
        scanner.take(':');
    }
    const auto minute = hasMinutes ? scanner.number(2) : std::optional(0);
    if (!hour || !minute || *hour > 23 || *minute > 59) {
        return std::nullopt;
    }
    return sign * (hours(*hour) + minutes(*minute));
}

} // namespace

std::optional<Timestamp> timestampFromIso(std::string_view text) {
    Scanner scanner(text);
    std::array<int, 6> parts{};
    constexpr std::array kSeparators{'-', '-', 'T', ':', ':', '\0'};
    for (std::size_t part = 0; part < parts.size(); ++part) {
        const auto number = scanner.number(part == 0 ? 4 : 2);
        if (!number || (kSeparators[part] != '\0' && !scanner.take(kSeparators[part]))) {
            return std::nullopt;
        }
        parts[part] = *number;
    }
    const auto fraction = scanner.take('.') ? scanner.fraction() : std::optional(0.0);
    const auto offset = fraction ? zone(scanner) : std::nullopt;
    const year_month_day date{year(parts[0]), month(unsigned(parts[1])), day(unsigned(parts[2]))};
    const bool isTime = parts[3] <= 23 && parts[4] <= 59 && parts[5] <= 60;
    if (!offset || !scanner.isAtEnd() || !date.ok() || !isTime) {
        return std::nullopt;
    }
    const seconds whole = sys_days(date).time_since_epoch() + hours(parts[3]) + minutes(parts[4]) + seconds(parts[5]) -
                          *offset - Timestamp::kReferenceDate;
    const double time = double(whole.count()) + *fraction;
    return time >= kFirstSecond && time < kLastSecond ? std::optional(Timestamp{time}) : std::nullopt;
}

std::string isoSeconds(Timestamp timestamp) {
    const auto clamped = std::clamp(timestamp.secondsSinceReference, kFirstSecond, kLastSecond - 1);
    return written(*civilTime({clamped}), false);
}

std::optional<std::string> isoMilliseconds(Timestamp timestamp) {
    const auto civil = civilTime(timestamp);
    return civil ? std::optional(written(*civil, true)) : std::nullopt;
}

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

const TimestampCoding kWireTimestamps{
    .read =
        [](json::Value &value, Timestamp &timestamp) {
            std::string_view text;
            if (const json::Problem problem = json::readText(value, text); problem != json::Problem::none) {
                return problem;
            }
            const auto read = timestampFromIso(text);
            timestamp = read.value_or(Timestamp());
            return read ? json::Problem::none : json::Problem::wrongType;
        },
    .append =
        [](Timestamp timestamp, std::string &json) {
            const auto text = isoMilliseconds(timestamp);
            if (text) {
                json += '"' + *text + '"';
            }
            return text.has_value();
        },
    .form = "a date and time in ISO 8601",
};

} // namespace tallowby
