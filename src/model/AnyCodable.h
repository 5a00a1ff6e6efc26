#pragma once

#include <QByteArray>
#include <QString>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace tallowby {

/// One loosely typed JSON value, as a block's payload holds them. A number that is whole and fits is an integer,
/// however it was written: 3.0 reads as 3 and is written back as 3.
class AnyCodable {
public:
    struct Member;
    using Array = std::vector<AnyCodable>;

    /// String keys to values, in the order in which they were first set.
    class Object {
    public:
        Object();
        /// Of members with the same key the last one counts.
        explicit Object(std::vector<Member> members);
        // Where Member is complete.
        Object(const Object &other);
        Object(Object &&other) noexcept;
        Object &operator=(const Object &other);
        Object &operator=(Object &&other) noexcept;
        ~Object();
        void set(const QString &key, AnyCodable value);
        [[nodiscard]] const std::vector<Member> &members() const { return m_members; }

    private:
        std::vector<Member> m_members;
    };

    using Value = std::variant<std::nullptr_t, std::int64_t, double, QString, bool, Array, Object>;

    /// Null.
    AnyCodable() = default;
    AnyCodable(const QString &text)
        : m_value(text) {}
    AnyCodable(Array array)
        : m_value(std::move(array)) {}
    AnyCodable(Object object)
        : m_value(std::move(object)) {}
    AnyCodable(std::same_as<bool> auto flag)
        : m_value(flag) {}
    AnyCodable(std::signed_integral auto number)
        : m_value(std::int64_t{number}) {}
    AnyCodable(std::floating_point auto number)
        : m_value(double{number}) {}

    [[nodiscard]] const Value &value() const { return m_value; }

    /// None when the text is not exactly one JSON value, nests too deep or holds a number that is not finite.
    [[nodiscard]] static std::optional<AnyCodable> fromJson(QByteArrayView json);
    /// Compact JSON. None when it nests too deep to be read again or holds a number that is not finite.
    [[nodiscard]] std::optional<QByteArray> toJson() const;

private:
    Value m_value;
};

struct AnyCodable::Member {
    QString key;
    AnyCodable value;
};

} // namespace tallowby
