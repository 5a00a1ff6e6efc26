#include "model/json/JsonReading.h"

#include "model/json/JsonText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace tallowby::json {

namespace {

using simdjson::ondemand::array;
using simdjson::ondemand::field;
using simdjson::ondemand::object;

bool isSpace(char character) {
    return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

/// The token without the white space up to the next one.
std::string_view token(Value &value) {
    std::string_view text = value.raw_json_token();
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool startsNumber(std::string_view text) {
    return !text.empty() && (text.front() == '-' || (text.front() >= '0' && text.front() <= '9'));
}

bool hasEscape(std::string_view text) {
    return std::memchr(text.data(), '\\', text.size()) != nullptr;
}

/// Digits and perhaps a sign, as they are written out again.
bool isPlainInteger(std::string_view text) {
    return text.find_first_not_of("-0123456789") == std::string_view::npos && text != "-0";
}

/// Walks a value, checks all of it and adds up how long its compact form is. `isCanonical` falls when some part of it
/// would be written in another way, or when a key might stand twice.
class CompactWalk {
public:
    std::size_t length = 0;
    bool isCanonical = true;

    Problem value(Value &value, int depth) {
        const std::string_view text = token(value);
        if (text.empty()) {
            return Problem::syntax;
        }
        switch (text.front()) {
        case '{':
            return objectMembers(value, depth);
        case '[':
            return arrayElements(value, depth);
        case '"': {
            length += text.size();
            std::string_view unescaped;
            return readText(value, unescaped);
        }
        case 't':
        case 'f': {
            length += text.size();
            bool flag = false;
            return readBoolean(value, flag);
        }
        case 'n':
            length += text.size();
            return isNull(value) ? Problem::none : Problem::syntax;
        default:
            length += text.size();
            double number = 0;
            if (readDouble(value, number) != Problem::none) {
                // What is of no type at all is no value. Nothing that has been walked into may be tried as another
                // type.
                return Problem::syntax;
            }
            isCanonical = isCanonical && isCanonicalNumber(text, number);
            return Problem::none;
        }
    }

private:
    /// Larger objects take the way through the tree, which finds keys that stand twice in less than quadratic time.
    static constexpr std::size_t kMaximumKeys = 24;
    /// Decimal numbers of so many digits are told apart by every double, so none of them has a shorter form.
    static constexpr std::size_t kSafeDigits = 15;

    static bool isCanonicalNumber(std::string_view text, double number) {
        if (isPlainInteger(text)) {
            return text.size() <= 18;
        }
        const bool isFraction = text.find_first_not_of("-.0123456789") == std::string_view::npos;
        if (isFraction && text.size() <= kSafeDigits + 1 && text.back() != '0') {
            return true;
        }
        // Computed coordinates have all 17 digits, tens of thousands of them in one drawing.
        return JsonNumberText(number).view() == text;
    }

    Problem objectMembers(Value &value, int depth) {
        object members;
        if (depth >= kMaximumNesting) {
            return Problem::tooDeep;
        }
        if (value.get_object().get(members)) {
            return Problem::syntax;
        }
        std::array<std::string_view, kMaximumKeys> keys;
        std::size_t count = 0;
        for (auto next : members) {
            field member;
            if (std::move(next).get(member)) {
                return Problem::syntax;
            }
            const char *const key = member.key().raw();
            const char *const bound = member.value().raw_json_token().data();
            const auto *const quote = static_cast<const char *>(std::memchr(key, '"', std::size_t(bound - key)));
            const std::string_view name(key, std::size_t(quote - key));
            if (hasEscape(name)) {
                isCanonical = false;
                std::string_view unescaped;
                if (member.unescaped_key().get(unescaped)) {
                    return Problem::syntax;
                }
            }
            isCanonical = isCanonical && count < kMaximumKeys &&
                          std::find(keys.begin(), keys.begin() + count, name) == keys.begin() + count;
            if (count < kMaximumKeys) {
                keys[count] = name;
            }
            ++count;
            length += name.size() + 4; // The quotes, the colon, and the comma or brace after the value.
            if (const Problem problem = this->value(member.value(), depth + 1); problem != Problem::none) {
                return problem;
            }
        }
        length += count == 0 ? 2 : 1;
        return Problem::none;
    }

    Problem arrayElements(Value &value, int depth) {
        array elements;
        if (depth >= kMaximumNesting) {
            return Problem::tooDeep;
        }
        if (value.get_array().get(elements)) {
            return Problem::syntax;
        }
        std::size_t count = 0;
        for (auto next : elements) {
            Value element;
            if (next.get(element)) {
                return Problem::syntax;
            }
            if (const Problem problem = this->value(element, depth + 1); problem != Problem::none) {
                return problem;
            }
            ++count;
        }
        length += count == 0 ? 2 : count + 1;
        return Problem::none;
    }
};

Problem readAnyObject(Value &value, int depth, AnyCodable &any) {
    object source;
    if (depth >= kMaximumNesting) {
        return Problem::tooDeep;
    }
    if (value.get_object().get(source)) {
        return Problem::syntax;
    }
    std::vector<AnyCodable::Member> members;
    for (auto next : source) {
        field member;
        std::string_view key;
        if (std::move(next).get(member) || member.unescaped_key().get(key)) {
            return Problem::syntax;
        }
        auto &added = members.emplace_back();
        added.key = QString::fromUtf8(key.data(), qsizetype(key.size()));
        if (const Problem problem = readAny(member.value(), depth + 1, added.value); problem != Problem::none) {
            return problem;
        }
    }
    any = AnyCodable::Object(std::move(members));
    return Problem::none;
}

Problem readAnyArray(Value &value, int depth, AnyCodable &any) {
    array source;
    if (depth >= kMaximumNesting) {
        return Problem::tooDeep;
    }
    if (value.get_array().get(source)) {
        return Problem::syntax;
    }
    AnyCodable::Array elements;
    for (auto next : source) {
        Value element;
        if (next.get(element)) {
            return Problem::syntax;
        }
        if (const Problem problem = readAny(element, depth + 1, elements.emplace_back()); problem != Problem::none) {
            return problem;
        }
    }
    any = AnyCodable(std::move(elements));
    return Problem::none;
}

} // namespace

Problem readText(Value &value, std::string_view &text) {
    const std::string_view quoted = token(value);
    if (quoted.empty() || quoted.front() != '"') {
        return Problem::wrongType;
    }
    if (quoted.size() < 2 || quoted.back() != '"') {
        return Problem::syntax;
    }
    // The text without quotes and escapes lies in the document as it is; the parser has checked its UTF-8.
    text = quoted.substr(1, quoted.size() - 2);
    if (!hasEscape(text)) {
        return Problem::none;
    }
    return value.get_string().get(text) ? Problem::syntax : Problem::none;
}

Problem readString(Value &value, QString &text) {
    std::string_view characters;
    const Problem problem = readText(value, characters);
    if (problem == Problem::none) {
        text = QString::fromUtf8(characters.data(), qsizetype(characters.size()));
    }
    return problem;
}

Problem readBoolean(Value &value, bool &flag) {
    const std::string_view text = token(value);
    if (text == "true" || text == "false") {
        flag = text == "true";
        return Problem::none;
    }
    return !text.empty() && (text.front() == 't' || text.front() == 'f') ? Problem::syntax : Problem::wrongType;
}

Problem readDouble(Value &value, double &number) {
    if (!startsNumber(token(value))) {
        return Problem::wrongType;
    }
    return value.get_double().get(number) || !std::isfinite(number) ? Problem::syntax : Problem::none;
}

Problem readInteger(Value &value, std::int64_t &number) {
    const std::string_view text = token(value);
    if (!startsNumber(text)) {
        return Problem::wrongType;
    }
    if (isPlainInteger(text)) {
        return value.get_int64().get(number) ? Problem::wrongType : Problem::none;
    }
    constexpr double kLimit = 9'223'372'036'854'775'808.0;
    double whole = 0;
    if (value.get_double().get(whole)) {
        return Problem::syntax;
    }
    if (std::trunc(whole) != whole || std::abs(whole) >= kLimit) {
        return Problem::wrongType;
    }
    number = std::int64_t(whole);
    return Problem::none;
}

Problem readAny(Value &value, int depth, AnyCodable &any) {
    const std::string_view text = token(value);
    if (text.empty()) {
        return Problem::syntax;
    }
    switch (text.front()) {
    case '{':
        return readAnyObject(value, depth, any);
    case '[':
        return readAnyArray(value, depth, any);
    case '"': {
        QString string;
        const Problem problem = readString(value, string);
        any = AnyCodable(string);
        return problem;
    }
    case 't':
    case 'f': {
        bool flag = false;
        const Problem problem = readBoolean(value, flag);
        any = AnyCodable(flag);
        return problem;
    }
    case 'n':
        any = AnyCodable();
        return isNull(value) ? Problem::none : Problem::syntax;
    default:
        break;
    }
    std::int64_t whole = 0;
    if (readInteger(value, whole) == Problem::none) {
        any = AnyCodable(whole);
        return Problem::none;
    }
    double number = 0;
    const Problem problem = readDouble(value, number);
    any = AnyCodable(number);
    return problem;
}

bool isNull(Value &value) {
    return token(value) == "null";
}

Problem skip(Value &value) {
    return CompactWalk().value(value, 0);
}

Problem readCompactObject(Value &value, TextParser &parser, QByteArray &text) {
    const std::string_view start = token(value);
    if (start.empty() || start.front() != '{') {
        return Problem::wrongType;
    }
    CompactWalk walk;
    if (const Problem problem = walk.value(value, 0); problem != Problem::none) {
        return problem;
    }
    const char *end = nullptr;
    if (value.current_location().get(end)) {
        return Problem::syntax;
    }
    while (isSpace(end[-1])) {
        --end;
    }
    const auto length = std::size_t(end - start.data());
    if (walk.isCanonical && walk.length == length) {
        text = QByteArray(start.data(), qsizetype(length));
        return Problem::none;
    }
    const auto tree = parser.parse({start.data(), length});
    auto compact = tree ? tree->toJson() : std::nullopt;
    if (!compact) {
        return Problem::syntax;
    }
    text = *std::move(compact);
    return Problem::none;
}

/// Reads `text` as the only element of an array around it: so a number, too, is an ordinary value, and whatever follows
/// the value is noticed.
template <typename Read>
bool TextParser::readOnly(std::string_view text, Read read) {
    const std::size_t size = text.size() + 2;
    if (size + simdjson::SIMDJSON_PADDING > m_capacity) {
        m_capacity = size * 2 + simdjson::SIMDJSON_PADDING;
        m_buffer = std::make_unique_for_overwrite<char[]>(m_capacity);
    }
    char *const buffer = m_buffer.get();
    buffer[0] = '[';
    std::ranges::copy(text, buffer + 1);
    buffer[size - 1] = ']';
    std::memset(buffer + size, 0, simdjson::SIMDJSON_PADDING);

    simdjson::ondemand::document document;
    array elements;
    if (m_parser.iterate(buffer, size, m_capacity).get(document) || document.get_array().get(elements)) {
        return false;
    }
    int count = 0;
    for (auto next : elements) {
        Value element;
        if (++count > 1 || next.get(element) || !read(element)) {
            return false;
        }
    }
    return count == 1 && document.current_location().error() == simdjson::OUT_OF_BOUNDS;
}

std::optional<AnyCodable> TextParser::parse(std::string_view text) {
    AnyCodable tree;
    const bool isRead = readOnly(text, [&tree](Value &value) { return readAny(value, 0, tree) == Problem::none; });
    return isRead ? std::optional(std::move(tree)) : std::nullopt;
}

std::optional<QByteArray> TextParser::compactObject(const QByteArray &text) {
    TextParser untidyTexts;
    QByteArray compact;
    const bool isRead = readOnly({text.data(), std::size_t(text.size())}, [&](Value &value) {
        return readCompactObject(value, untidyTexts, compact) == Problem::none;
    });
    // A payload that is compact already stays the one that the block holds.
    return isRead ? std::optional(compact == text ? text : compact) : std::nullopt;
}

bool TextParser::readObject(const QByteArray &text,
                            const std::function<Problem(std::string_view key, Value &value)> &member) {
    return readOnly({text.data(), std::size_t(text.size())}, [&member](Value &value) {
        object members;
        if (value.get_object().get(members)) {
            return false;
        }
        for (auto next : members) {
            field read;
            std::string_view key;
            if (std::move(next).get(read) || read.unescaped_key().get(key)) {
                return false;
            }
            Problem problem = member(key, read.value());
            if (problem == Problem::wrongType) {
                problem = CompactWalk().value(read.value(), 1);
            }
            if (problem != Problem::none) {
                return false;
            }
        }
        return true;
    });
}

} // namespace tallowby::json
