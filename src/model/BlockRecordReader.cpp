#include "model/BlockRecordReader.h"

#include "model/TimestampCoding.h"
#include "model/json/JsonReading.h"
#include "model/json/JsonText.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstring>
#include <limits>

namespace tallowby {

namespace {

using json::Problem;
using json::Value;

constexpr std::array kRequiredKeys{
    RecordKey::id,     RecordKey::userId, RecordKey::xPosition, RecordKey::yPosition, RecordKey::width,
    RecordKey::height, RecordKey::zIndex, RecordKey::blockType, RecordKey::createdAt, RecordKey::updatedAt,
};

QString quoted(RecordKey key) {
    const std::string_view name = kRecordKeys[std::size_t(key)];
    return u'"' + QLatin1StringView(name.data(), qsizetype(name.size())) + u'"';
}

} // namespace

JsonBuffer::JsonBuffer(std::size_t size)
    : m_size(size)
    , m_bytes(std::make_unique_for_overwrite<char[]>(size + kPadding)) {
    static_assert(kPadding >= simdjson::SIMDJSON_PADDING);
    std::memset(m_bytes.get() + size, 0, kPadding);
}

/// The parsers and what the records of one reader share.
class BlockRecordReader::Session {
public:
    Session(const TimestampCoding &timestamps, EmbeddingForm embeddings)
        : m_timestamps(timestamps)
        , m_embeddings(embeddings) {}

    std::optional<QString> read(const JsonBuffer &document, const std::function<void(BlockDTO)> &take);

private:
    /// Kinds and colours repeat: records share the last few instead of holding one each.
    class SharedTexts {
    public:
        const QString &shared(std::string_view text) {
            const QLatin1StringView latin(text.data(), qsizetype(text.size()));
            const auto found = std::ranges::find_if(m_texts, [latin](const QString &known) { return known == latin; });
            if (found != m_texts.end()) {
                return *found;
            }
            m_next = (m_next + 1) % m_texts.size();
            m_texts[m_next] = QString::fromUtf8(text.data(), qsizetype(text.size()));
            return m_texts[m_next];
        }

    private:
        std::array<QString, 16> m_texts;
        std::size_t m_next = 0;
    };

    std::optional<QString> readRecord(simdjson::ondemand::object record, BlockDTO &dto);
    /// The key at `raw`, looked for from `expected` on: records have their keys in the declared order.
    static std::optional<RecordKey> keyAt(simdjson::ondemand::field &field, std::size_t expected, bool &isValid);
    Problem readMember(RecordKey key, Value &value, BlockDTO &dto);
    QString reason(RecordKey key, Problem problem) const;

    static Problem readUuid(Value &value, QUuid &uuid);
    Problem readEmbedding(Value &value, std::vector<float> &embedding);
    static Problem readVector(Value &value, std::vector<float> &embedding);
    static Problem readShared(Value &value, SharedTexts &texts, QString &shared);
    static Problem readTags(Value &value, QStringList &tags);

    /// Reads into an optional: null counts as absent.
    template <typename Field, typename Read>
    static Problem optional(Value &value, std::optional<Field> &field, Read read) {
        return json::isNull(value) ? Problem::none : read(value, field.emplace());
    }

    const TimestampCoding &m_timestamps;
    const EmbeddingForm m_embeddings;
    simdjson::ondemand::parser m_parser;
    simdjson::ondemand::parser m_vectorParser;
    json::TextParser m_payloads;
    SharedTexts m_kinds;
    SharedTexts m_colors;
};

BlockRecordReader::BlockRecordReader(const TimestampCoding &timestamps, EmbeddingForm embeddings)
    : m_session(std::make_unique<Session>(timestamps, embeddings)) {}

BlockRecordReader::~BlockRecordReader() = default;

std::optional<QString> BlockRecordReader::read(const JsonBuffer &document, const std::function<void(BlockDTO)> &take) {
    return m_session->read(document, take);
}

std::optional<QString> BlockRecordReader::Session::read(const JsonBuffer &document,
                                                        const std::function<void(BlockDTO)> &take) {
    if (document.size() > std::numeric_limits<std::uint32_t>::max() - JsonBuffer::kPadding) {
        return QStringLiteral("the document is larger than 4 GB");
    }
    simdjson::ondemand::document parsed;
    simdjson::ondemand::array records;
    auto error = m_parser.iterate(document.data(), document.size(), document.capacity()).get(parsed);
    if (!error) {
        error = parsed.get_array().get(records);
    }
    if (error == simdjson::INCORRECT_TYPE) {
        return QStringLiteral("the document is no array of records");
    }
    if (error) {
        return QStringLiteral("the document is no JSON: ") + QLatin1StringView(simdjson::error_message(error));
    }
    std::size_t index = 0;
    for (auto next : records) {
        Value value;
        simdjson::ondemand::object record;
        BlockDTO dto;
        std::optional<QString> refusal;
        if (next.get(value)) {
            refusal = QStringLiteral("it is no JSON");
        } else if (value.get_object().get(record)) {
            refusal = QStringLiteral("it is no object");
        } else {
            refusal = readRecord(record, dto);
        }
        if (refusal) {
            return QStringLiteral("record %1: ").arg(index) + *refusal;
        }
        take(std::move(dto));
        ++index;
    }
    if (parsed.current_location().error() != simdjson::OUT_OF_BOUNDS) {
        return QStringLiteral("the document goes on after its end");
    }
    return std::nullopt;
}

std::optional<QString> BlockRecordReader::Session::readRecord(simdjson::ondemand::object record, BlockDTO &dto) {
    std::bitset<kRecordKeys.size()> seen;
    std::size_t expected = 0;
    for (auto next : record) {
        simdjson::ondemand::field field;
        bool isValid = true;
        if (std::move(next).get(field)) {
            return QStringLiteral("it is no JSON");
        }
        const auto key = keyAt(field, expected, isValid);
        if (!isValid) {
            return QStringLiteral("a key is no text");
        }
        if (!key) {
            if (const Problem problem = json::skip(field.value()); problem != Problem::none) {
                return QStringLiteral("an unknown key has a value that is no JSON or nests too deep");
            }
            continue;
        }
        const auto place = std::size_t(*key);
        if (seen.test(place)) {
            return quoted(*key) + u" stands twice";
        }
        seen.set(place);
        expected = place + 1;
        if (const Problem problem = readMember(*key, field.value(), dto); problem != Problem::none) {
            return reason(*key, problem);
        }
    }
    for (const RecordKey key : kRequiredKeys) {
        if (!seen.test(std::size_t(key))) {
            return quoted(key) + u" is missing";
        }
    }
    return std::nullopt;
}

std::optional<RecordKey> BlockRecordReader::Session::keyAt(simdjson::ondemand::field &field, std::size_t expected,
                                                           bool &isValid) {
    const char *const raw = field.key().raw();
    for (std::size_t step = 0; step < kRecordKeys.size(); ++step) {
        const std::size_t place = (expected + step) % kRecordKeys.size();
        const std::string_view name = kRecordKeys[place];
        // Names are shorter than the padding, so the comparison stays inside the buffer.
        if (raw[0] == name[0] && std::memcmp(raw, name.data(), name.size()) == 0 && raw[name.size()] == '"') {
            return static_cast<RecordKey>(place);
        }
    }
    std::string_view unescaped;
    isValid = !field.unescaped_key().get(unescaped);
    const auto found = std::ranges::find(kRecordKeys, unescaped);
    if (!isValid || found == kRecordKeys.end()) {
        return std::nullopt;
    }
    return static_cast<RecordKey>(found - kRecordKeys.begin());
}

Problem BlockRecordReader::Session::readMember(RecordKey key, Value &value, BlockDTO &dto) {
    switch (key) {
    case RecordKey::id:
        return readUuid(value, dto.id);
    case RecordKey::userId:
        return readUuid(value, dto.userId);
    case RecordKey::xPosition:
        return json::readDouble(value, dto.xPosition);
    case RecordKey::yPosition:
        return json::readDouble(value, dto.yPosition);
    case RecordKey::width:
        return json::readDouble(value, dto.width);
    case RecordKey::height:
        return json::readDouble(value, dto.height);
    case RecordKey::zIndex:
        return json::readInteger(value, dto.zIndex);
    case RecordKey::blockType:
        return readShared(value, m_kinds, dto.blockType);
    case RecordKey::content:
        return optional(value, dto.content, [this](Value &object, QByteArray &text) {
            return json::readCompactObject(object, m_payloads, text);
        });
    case RecordKey::rawText:
        return optional(value, dto.rawText, json::readString);
    case RecordKey::embedding:
        return optional(value, dto.embedding, [this](Value &vector, std::vector<float> &embedding) {
            return readEmbedding(vector, embedding);
        });
    case RecordKey::tags:
        return optional(value, dto.tags, readTags);
    case RecordKey::isTodo:
        return optional(value, dto.isTodo, json::readBoolean);
    case RecordKey::isEvent:
        return optional(value, dto.isEvent, json::readBoolean);
    case RecordKey::dueDate:
        return optional(value, dto.dueDate, m_timestamps.read);
    case RecordKey::createdAt:
        return m_timestamps.read(value, dto.createdAt);
    case RecordKey::updatedAt:
        return m_timestamps.read(value, dto.updatedAt);
    case RecordKey::syncedAt:
        return optional(value, dto.syncedAt, m_timestamps.read);
    case RecordKey::deletedAt:
        return optional(value, dto.deletedAt, m_timestamps.read);
    case RecordKey::fontSize:
        return optional(value, dto.fontSize, json::readDouble);
    case RecordKey::textColor:
        return optional(value, dto.textColor,
                        [this](Value &text, QString &color) { return readShared(text, m_colors, color); });
    case RecordKey::rotation:
        return optional(value, dto.rotation, json::readDouble);
    case RecordKey::isBold:
        return optional(value, dto.isBold, json::readBoolean);
    case RecordKey::isItalic:
        return optional(value, dto.isItalic, json::readBoolean);
    case RecordKey::isStrikethrough:
        return optional(value, dto.isStrikethrough, json::readBoolean);
    }
    return Problem::syntax;
}

QString BlockRecordReader::Session::reason(RecordKey key, Problem problem) const {
    switch (problem) {
    case Problem::tooDeep:
        return quoted(key) + QStringLiteral(" nests deeper than %1").arg(json::kMaximumNesting);
    case Problem::syntax:
        return quoted(key) + u" holds bad JSON or a number out of range";
    case Problem::none:
    case Problem::wrongType:
        break;
    }
    switch (key) {
    case RecordKey::id:
    case RecordKey::userId:
        return quoted(key) + u" is no UUID";
    case RecordKey::zIndex:
        return quoted(key) + u" is no whole number of 64 bits";
    case RecordKey::content:
        return quoted(key) + u" is no object";
    case RecordKey::blockType:
    case RecordKey::rawText:
    case RecordKey::textColor:
        return quoted(key) + u" is no string";
    case RecordKey::embedding:
        return quoted(key) + u" is no array of numbers of 32 bits";
    case RecordKey::tags:
        return quoted(key) + u" is no array of strings";
    case RecordKey::isTodo:
    case RecordKey::isEvent:
    case RecordKey::isBold:
    case RecordKey::isItalic:
    case RecordKey::isStrikethrough:
        return quoted(key) + u" is no boolean";
    case RecordKey::dueDate:
    case RecordKey::createdAt:
    case RecordKey::updatedAt:
    case RecordKey::syncedAt:
    case RecordKey::deletedAt:
        return quoted(key) + u" is not " + QLatin1StringView(m_timestamps.form);
    default:
        return quoted(key) + u" is no number";
    }
}

Problem BlockRecordReader::Session::readUuid(Value &value, QUuid &uuid) {
    std::string_view text;
    if (const Problem problem = json::readText(value, text); problem != Problem::none) {
        return problem;
    }
    const auto parsed = uuidFromText(text);
    uuid = parsed.value_or(QUuid());
    return parsed ? Problem::none : Problem::wrongType;
}

Problem BlockRecordReader::Session::readEmbedding(Value &value, std::vector<float> &embedding) {
    simdjson::ondemand::json_type type;
    if (value.type().get(type)) {
        return Problem::syntax;
    }
    if (m_embeddings == EmbeddingForm::numbers || type != simdjson::ondemand::json_type::string) {
        return readVector(value, embedding);
    }
    std::string_view text;
    if (const Problem problem = json::readText(value, text); problem != Problem::none) {
        return problem;
    }
    const simdjson::padded_string padded(text);
    simdjson::ondemand::document document;
    simdjson::ondemand::value inside;
    if (m_vectorParser.iterate(padded).get(document) || document.get_value().get(inside)) {
        return Problem::wrongType;
    }
    const Problem problem = readVector(inside, embedding);
    return problem == Problem::none && document.current_location().error() == simdjson::OUT_OF_BOUNDS
               ? Problem::none
               : Problem::wrongType;
}

Problem BlockRecordReader::Session::readVector(Value &value, std::vector<float> &embedding) {
    simdjson::ondemand::array numbers;
    if (value.get_array().get(numbers)) {
        return Problem::wrongType;
    }
    for (auto next : numbers) {
        Value element;
        double number = 0;
        if (next.get(element)) {
            return Problem::syntax;
        }
        if (const Problem problem = json::readDouble(element, number); problem != Problem::none) {
            return problem;
        }
        if (!std::isfinite(static_cast<float>(number))) {
            return Problem::wrongType;
        }
        embedding.push_back(static_cast<float>(number));
    }
    return Problem::none;
}

Problem BlockRecordReader::Session::readTags(Value &value, QStringList &tags) {
    simdjson::ondemand::array texts;
    if (value.get_array().get(texts)) {
        return Problem::wrongType;
    }
    for (auto next : texts) {
        Value element;
        if (next.get(element)) {
            return Problem::syntax;
        }
        if (const Problem problem = json::readString(element, tags.emplace_back()); problem != Problem::none) {
            return problem;
        }
    }
    return Problem::none;
}

Problem BlockRecordReader::Session::readShared(Value &value, SharedTexts &texts, QString &shared) {
    std::string_view text;
    const Problem problem = json::readText(value, text);
    if (problem == Problem::none) {
        shared = texts.shared(text);
    }
    return problem;
}

} // namespace tallowby
