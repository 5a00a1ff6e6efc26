#include "model/BlockRecordWriter.h"

#include "model/TimestampCoding.h"
#include "model/json/JsonReading.h"
#include "model/json/JsonText.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <bitset>
#include <string>

namespace tallowby {

class BlockRecordWriter::Session {
public:
    Session(const TimestampCoding &timestamps, std::initializer_list<RecordKey> leftOut)
        : m_timestamps(timestamps) {
        for (const RecordKey key : leftOut) {
            m_leftOut.set(std::size_t(key));
        }
    }

    std::optional<QString> write(const BlockFields &fields);

    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer{buffer};

private:
    bool writeMembers(const BlockDTO &dto);

    template <typename Field>
    bool member(RecordKey key, const Field &field) {
        m_key = key;
        if (m_leftOut.test(std::size_t(key))) {
            return true;
        }
        const std::string_view name = kRecordKeys[std::size_t(key)];
        return writer.Key(name.data(), rapidjson::SizeType(name.size())) && value(field);
    }
    template <typename Field>
    bool member(RecordKey key, const std::optional<Field> &field) {
        return !field || member(key, *field);
    }

    bool raw(std::string_view text, rapidjson::Type type) {
        return !text.empty() && writer.RawValue(text.data(), text.size(), type);
    }
    bool value(QUuid uuid) {
        const auto text = uuidText(uuid);
        return writer.String(text.data(), rapidjson::SizeType(text.size()));
    }
    bool value(double number) { return raw(JsonNumberText(number).view(), rapidjson::kNumberType); }
    bool value(float number) { return raw(JsonNumberText(number).view(), rapidjson::kNumberType); }
    bool value(std::int64_t number) { return writer.Int64(number); }
    bool value(bool flag) { return writer.Bool(flag); }
    bool value(const QString &text) {
        const QByteArray bytes = text.toUtf8();
        return writer.String(bytes.constData(), rapidjson::SizeType(bytes.size()));
    }
    /// A payload: JSON already.
    bool value(const QByteArray &object) {
        return raw({object.constData(), std::size_t(object.size())}, rapidjson::kObjectType);
    }
    bool value(Timestamp timestamp) {
        m_timestampText.clear();
        return m_timestamps.append(timestamp, m_timestampText) && raw(m_timestampText, rapidjson::kNumberType);
    }
    bool value(const auto &elements) {
        return writer.StartArray() &&
               std::ranges::all_of(elements, [this](const auto &each) { return this->value(each); }) &&
               writer.EndArray();
    }

    const TimestampCoding &m_timestamps;
    std::bitset<kRecordKeys.size()> m_leftOut;
    json::TextParser m_payloads;
    std::string m_timestampText;
    RecordKey m_key = RecordKey::id;
};

BlockRecordWriter::BlockRecordWriter(const TimestampCoding &timestamps, std::initializer_list<RecordKey> leftOut)
    : m_session(std::make_unique<Session>(timestamps, leftOut)) {}

BlockRecordWriter::~BlockRecordWriter() = default;

void BlockRecordWriter::startArray() {
    m_session->writer.StartArray();
}

void BlockRecordWriter::endArray() {
    m_session->writer.EndArray();
}

std::optional<QString> BlockRecordWriter::write(const BlockFields &fields) {
    return m_session->write(fields);
}

std::string_view BlockRecordWriter::text() const {
    return {m_session->buffer.GetString(), m_session->buffer.GetSize()};
}

void BlockRecordWriter::clearText() {
    m_session->buffer.Clear();
}

std::optional<QString> BlockRecordWriter::Session::write(const BlockFields &fields) {
    if (writeMembers(BlockDTO(fields, m_payloads))) {
        return std::nullopt;
    }
    const std::string_view name = kRecordKeys[std::size_t(m_key)];
    return u'"' + QLatin1StringView(name.data(), qsizetype(name.size())) + u"\" is not finite";
}

bool BlockRecordWriter::Session::writeMembers(const BlockDTO &dto) {
    using enum RecordKey;
    return writer.StartObject() && member(id, dto.id) && member(userId, dto.userId) &&
           member(xPosition, dto.xPosition) && member(yPosition, dto.yPosition) && member(width, dto.width) &&
           member(height, dto.height) && member(zIndex, dto.zIndex) && member(blockType, dto.blockType) &&
           member(content, dto.content) && member(rawText, dto.rawText) && member(embedding, dto.embedding) &&
           member(tags, dto.tags) && member(isTodo, dto.isTodo) && member(isEvent, dto.isEvent) &&
           member(dueDate, dto.dueDate) && member(createdAt, dto.createdAt) && member(updatedAt, dto.updatedAt) &&
           member(syncedAt, dto.syncedAt) && member(deletedAt, dto.deletedAt) && member(fontSize, dto.fontSize) &&
           member(textColor, dto.textColor) && member(rotation, dto.rotation) && member(isBold, dto.isBold) &&
           member(isItalic, dto.isItalic) && member(isStrikethrough, dto.isStrikethrough) && writer.EndObject();
}

} // namespace tallowby
