#include "model/AnyCodable.h"

#include "model/json/JsonReading.h"
#include "model/json/JsonText.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <numeric>

namespace tallowby {

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

/// Writes one value; false when it cannot be written.
class ValueWriter {
public:
    explicit ValueWriter(Writer &writer)
        : m_writer(writer) {}

    bool write(const AnyCodable &any, int depth) {
        m_depth = depth;
        return std::visit(*this, any.value());
    }

    bool operator()(std::nullptr_t) { return m_writer.Null(); }
    bool operator()(std::int64_t number) { return m_writer.Int64(number); }
    bool operator()(double number) {
        const JsonNumberText text(number);
        return !text.view().empty() &&
               m_writer.RawValue(text.view().data(), text.view().size(), rapidjson::kNumberType);
    }
    bool operator()(const QString &text) {
        const QByteArray bytes = text.toUtf8();
        return m_writer.String(bytes.constData(), rapidjson::SizeType(bytes.size()));
    }
    bool operator()(bool flag) { return m_writer.Bool(flag); }
    bool operator()(const AnyCodable::Array &array) {
        const int inside = m_depth + 1;
        return inside <= json::kMaximumNesting && m_writer.StartArray() &&
               std::ranges::all_of(array, [&](const AnyCodable &element) { return write(element, inside); }) &&
               m_writer.EndArray();
    }
    bool operator()(const AnyCodable::Object &object) {
        const int inside = m_depth + 1;
        const auto writeMember = [&](const AnyCodable::Member &member) {
            const QByteArray key = member.key.toUtf8();
            return m_writer.Key(key.constData(), rapidjson::SizeType(key.size())) && write(member.value, inside);
        };
        return inside <= json::kMaximumNesting && m_writer.StartObject() &&
               std::ranges::all_of(object.members(), writeMember) && m_writer.EndObject();
    }

private:
    Writer &m_writer;
    int m_depth = 0;
};

} // namespace

AnyCodable::Object::Object() = default;
AnyCodable::Object::Object(const Object &other) = default;
AnyCodable::Object::Object(Object &&other) noexcept = default;
AnyCodable::Object &AnyCodable::Object::operator=(const Object &other) = default;
AnyCodable::Object &AnyCodable::Object::operator=(Object &&other) noexcept = default;
AnyCodable::Object::~Object() = default;

AnyCodable::Object::Object(std::vector<Member> members)
    : m_members(std::move(members)) {
    std::vector<std::size_t> places(m_members.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::stable_sort(places, {}, [this](std::size_t place) -> const QString & { return m_members[place].key; });
    std::vector<bool> isReplaced(m_members.size());
    bool anyReplaced = false;
    for (std::size_t next = 1; next < places.size(); ++next) {
        if (m_members[places[next - 1]].key == m_members[places[next]].key) {
            isReplaced[places[next - 1]] = true;
            anyReplaced = true;
        }
    }
    if (anyReplaced) {
        std::erase_if(m_members, [&, place = std::size_t{0}](const Member &) mutable { return isReplaced[place++]; });
    }
}

void AnyCodable::Object::set(const QString &key, AnyCodable value) {
    const auto found = std::ranges::find(m_members, key, &Member::key);
    if (found != m_members.end()) {
        found->value = std::move(value);
    } else {
        m_members.push_back({key, std::move(value)});
    }
}

std::optional<AnyCodable> AnyCodable::fromJson(QByteArrayView json) {
    return json::TextParser().parse({json.data(), std::size_t(json.size())});
}

std::optional<QByteArray> AnyCodable::toJson() const {
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    if (!ValueWriter(writer).write(*this, 0)) {
        return std::nullopt;
    }
    return QByteArray(buffer.GetString(), qsizetype(buffer.GetSize()));
}

} // namespace tallowby
