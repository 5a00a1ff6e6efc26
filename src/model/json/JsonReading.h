#pragma once

#include "model/AnyCodable.h"

#include <QByteArray>
#include <QString>

#include <simdjson.h>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace tallowby::json {

using Value = simdjson::ondemand::value;

/// How deep arrays and objects may lie in one another inside one value of a record.
inline constexpr int kMaximumNesting = 64;

/// Why a value was refused.
enum class Problem { none, wrongType, syntax, tooDeep };

/// Each reads one value whole and checks it: the parser itself only looks at what it is asked for.
[[nodiscard]] Problem readString(Value &value, QString &text);
[[nodiscard]] Problem readBoolean(Value &value, bool &flag);
/// A number that is not finite as a double counts as bad syntax.
[[nodiscard]] Problem readDouble(Value &value, double &number);
/// A whole number that fits, however it is written.
[[nodiscard]] Problem readInteger(Value &value, std::int64_t &number);
/// A value that lies `depth` arrays and objects deep.
[[nodiscard]] Problem readAny(Value &value, int depth, AnyCodable &any);
[[nodiscard]] Problem skip(Value &value);
[[nodiscard]] bool isNull(Value &value);

/// The characters of a string value between its quotes, when none of them is escaped; else the unescaped text, which
/// lives as long as the parser's document.
[[nodiscard]] Problem readText(Value &value, std::string_view &text);

/// Parses small texts one after another. One thread at a time.
class TextParser {
public:
    /// The value that `text` consists of; null when it is not exactly one value.
    [[nodiscard]] std::optional<AnyCodable> parse(std::string_view text);
    /// The object that `text` consists of, in compact form; none when it is no object or does not parse.
    [[nodiscard]] std::optional<QByteArray> compactObject(const QByteArray &text);
    /// Goes through the members of the object that `text` consists of. `member` gets the key, without escapes, and
    /// reads the value whole; with `wrongType` it leaves the value alone. False when the text is no object or any part
    /// of it does not parse: then nothing that was read counts.
    [[nodiscard]] bool readObject(const QByteArray &text,
                                  const std::function<Problem(std::string_view key, Value &value)> &member);

private:
    template <typename Read>
    bool readOnly(std::string_view text, Read read);

    simdjson::ondemand::parser m_parser;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
};

/// An object inside a larger document as compact JSON text of its own. The text is copied as it stands when it is
/// compact already; else it goes through `parser` and comes back in the form that AnyCodable writes.
[[nodiscard]] Problem readCompactObject(Value &value, TextParser &parser, QByteArray &text);

} // namespace tallowby::json
