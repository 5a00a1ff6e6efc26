#pragma once

#include <QUuid>

#include <array>
#include <optional>
#include <string_view>

namespace tallowby {

/// How the values of records stand in JSON text. Numbers that are whole and fit 64 bits have no fraction and no
/// exponent; others are the shortest text that reads back as the same number. A number that is not finite gives empty
/// text.
class JsonNumberText {
public:
    explicit JsonNumberText(double number);
    /// The shortest text that is this number among those of 32 bits.
    explicit JsonNumberText(float number);

    [[nodiscard]] std::string_view view() const { return {m_text.data(), m_length}; }

private:
    std::array<char, 32> m_text;
    std::size_t m_length = 0;
};

/// 36 characters, upper case, with hyphens.
[[nodiscard]] std::array<char, 36> uuidText(QUuid uuid);
/// Exactly the hyphenated form, in either case; none for anything else.
[[nodiscard]] std::optional<QUuid> uuidFromText(std::string_view text);

} // namespace tallowby
