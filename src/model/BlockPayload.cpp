#include "model/AnyCodable.h"
#include "model/Block.h"
#include "model/json/JsonReading.h"
#include "model/json/JsonText.h"
#include "model/json/PayloadText.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <limits>

namespace tallowby {

namespace {

using json::Problem;
using json::Value;
using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;
using Table = std::vector<QStringList>;

namespace key {
constexpr std::string_view title = "title";
constexpr std::string_view items = "items";
constexpr std::string_view cells = "cells";
constexpr std::string_view shapeType = "shapeType";
constexpr std::string_view fillColor = "fillColor";
constexpr std::string_view strokeColor = "strokeColor";
constexpr std::string_view strokeWidth = "strokeWidth";
constexpr std::string_view strokes = "strokes";
constexpr std::string_view fileName = "fileName";
constexpr std::string_view duration = "duration";
constexpr std::string_view image = "image";
constexpr std::string_view iconName = "iconName";
constexpr std::string_view flipHorizontal = "flipHorizontal";
constexpr std::string_view flipVertical = "flipVertical";
} // namespace key

constexpr double kDefaultStrokeWidth = 2.0;
constexpr double kSmallestSketchSide = 60;

const QString &defaultFillColor() {
    static const QString color = QStringLiteral("#FFFFFF");
    return color;
}

const QString &defaultStrokeColor() {
    static const QString color = QStringLiteral("#333333");
    return color;
}

bool isColor(const QString &text) {
    const auto isHexDigit = [](QChar digit) {
        return (digit >= u'0' && digit <= u'9') || (digit >= u'a' && digit <= u'f') || (digit >= u'A' && digit <= u'F');
    };
    return text.size() == 7 && text.front() == u'#' && std::all_of(text.begin() + 1, text.end(), isHexDigit);
}

/// The value under a key; none when the payload does not parse, the key is missing or `read` finds another type.
template <typename Result>
std::optional<Result> payloadValue(const QByteArray &content, std::string_view key,
                                   Problem (*read)(Value &, Result &)) {
    if (content.isEmpty()) {
        return std::nullopt;
    }
    std::optional<Result> found;
    const bool isRead = json::TextParser().readObject(content, [&](std::string_view name, Value &value) {
        if (name != key) {
            return Problem::wrongType;
        }
        const Problem problem = read(value, found.emplace());
        if (problem == Problem::wrongType) {
            found.reset();
        }
        return problem;
    });
    return isRead ? std::move(found) : std::nullopt;
}

/// Reads a value where another type counts as none.
template <typename Result>
Problem readIfTyped(Value &value, std::optional<Result> &result, Problem (*read)(Value &, Result &)) {
    const Problem problem = read(value, result.emplace());
    if (problem == Problem::wrongType) {
        result.reset();
        return json::skip(value);
    }
    return problem;
}

template <typename Take>
Problem readMembers(Value &value, Take take) {
    simdjson::ondemand::object members;
    if (value.get_object().get(members)) {
        return Problem::wrongType;
    }
    for (auto next : members) {
        simdjson::ondemand::field member;
        std::string_view name;
        if (std::move(next).get(member) || member.unescaped_key().get(name)) {
            return Problem::syntax;
        }
        if (const Problem problem = take(name, member.value()); problem != Problem::none) {
            return problem;
        }
    }
    return Problem::none;
}

/// Elements of another type are left out.
template <typename Element>
Problem readElements(Value &value, std::vector<Element> &elements, Problem (*read)(Value &, std::vector<Element> &)) {
    simdjson::ondemand::array source;
    if (value.get_array().get(source)) {
        return Problem::wrongType;
    }
    for (auto next : source) {
        Value element;
        if (next.get(element)) {
            return Problem::syntax;
        }
        Problem problem = read(element, elements);
        if (problem == Problem::wrongType) {
            problem = json::skip(element);
        }
        if (problem != Problem::none) {
            return problem;
        }
    }
    return Problem::none;
}

Problem readPoint(Value &value, std::vector<SketchPoint> &points) {
    std::optional<double> x;
    std::optional<double> y;
    std::optional<double> pressure;
    const Problem problem = readMembers(value, [&](std::string_view name, Value &number) {
        if (name == "x") {
            return readIfTyped(number, x, json::readDouble);
        }
        if (name == "y") {
            return readIfTyped(number, y, json::readDouble);
        }
        return name == "pressure" ? readIfTyped(number, pressure, json::readDouble) : json::skip(number);
    });
    if (problem == Problem::none && x && y) {
        points.push_back({.x = *x, .y = *y, .pressure = pressure.value_or(1.0)});
    }
    return problem;
}

Problem readPoints(Value &value, std::vector<SketchPoint> &points) {
    return readElements(value, points, readPoint);
}

Problem readStroke(Value &value, std::vector<SketchStroke> &strokes) {
    std::optional<std::vector<SketchPoint>> points;
    std::optional<QString> color;
    std::optional<double> width;
    const Problem problem = readMembers(value, [&](std::string_view name, Value &member) {
        if (name == "points") {
            return readIfTyped(member, points, readPoints);
        }
        if (name == "color") {
            return readIfTyped(member, color, json::readString);
        }
        return name == "width" ? readIfTyped(member, width, json::readDouble) : json::skip(member);
    });
    if (problem == Problem::none && points && color && width) {
        strokes.push_back(
            {.points = *std::move(points), .color = isColor(*color) ? *color : defaultStrokeColor(), .width = *width});
    }
    return problem;
}

Problem readStrokes(Value &value, std::vector<SketchStroke> &strokes) {
    return readElements(value, strokes, readStroke);
}

Problem readItem(Value &value, std::vector<ChecklistItemPtr> &items) {
    std::optional<QString> id;
    std::optional<QString> text;
    std::optional<bool> isDone;
    const Problem problem = readMembers(value, [&](std::string_view name, Value &member) {
        if (name == "id") {
            return readIfTyped(member, id, json::readString);
        }
        if (name == "text") {
            return readIfTyped(member, text, json::readString);
        }
        return name == "isDone" ? readIfTyped(member, isDone, json::readBoolean) : json::skip(member);
    });
    if (problem == Problem::none) {
        const auto known = uuidFromText(id.value_or(QString()).toStdString());
        items.push_back(std::make_shared<ChecklistItem>(known.value_or(QUuid::createUuid()), text.value_or(QString()),
                                                        isDone.value_or(false)));
    }
    return problem;
}

Problem readItems(Value &value, std::vector<ChecklistItemPtr> &items) {
    return readElements(value, items, readItem);
}

Problem readRow(Value &value, Table &rows) {
    simdjson::ondemand::array source;
    if (value.get_array().get(source)) {
        return Problem::wrongType;
    }
    QStringList &row = rows.emplace_back();
    for (auto next : source) {
        Value cell;
        if (next.get(cell)) {
            return Problem::syntax;
        }
        // A cell of another type stays where it is, as an empty one: leaving it out would shift those after it.
        Problem problem = json::readString(cell, row.emplace_back());
        if (problem == Problem::wrongType) {
            problem = json::skip(cell);
        }
        if (problem != Problem::none) {
            return problem;
        }
    }
    return Problem::none;
}

Problem readRows(Value &value, Table &rows) {
    return readElements(value, rows, readRow);
}

Problem readBase64(Value &value, QByteArray &bytes) {
    std::string_view text;
    const Problem problem = json::readText(value, text);
    if (problem != Problem::none) {
        return problem;
    }
    const auto decoded = QByteArray::fromBase64Encoding(QByteArray::fromRawData(text.data(), qsizetype(text.size())),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    bytes = decoded ? decoded.decoded : QByteArray();
    return Problem::none;
}

bool writeText(JsonWriter &writer, const QString &text) {
    const QByteArray bytes = text.toUtf8();
    return writer.String(bytes.constData(), rapidjson::SizeType(bytes.size()));
}

/// False for a number that is not finite.
bool writeNumber(JsonWriter &writer, double number) {
    const JsonNumberText text(number);
    return !text.view().empty() && writer.RawValue(text.view().data(), text.view().size(), rapidjson::kNumberType);
}

bool writePoint(JsonWriter &writer, const SketchPoint &point) {
    return writer.StartObject() && writer.Key("x", 1) && writeNumber(writer, point.x) && writer.Key("y", 1) &&
           writeNumber(writer, point.y) && writer.Key("pressure", 8) && writeNumber(writer, point.pressure) &&
           writer.EndObject();
}

bool writeStroke(JsonWriter &writer, const SketchStroke &stroke) {
    return writer.StartObject() && writer.Key("points", 6) && writer.StartArray() &&
           std::ranges::all_of(stroke.points, [&](const SketchPoint &point) { return writePoint(writer, point); }) &&
           writer.EndArray() && writer.Key("color", 5) && writeText(writer, stroke.color) && writer.Key("width", 5) &&
           writeNumber(writer, stroke.width) && writer.EndObject();
}

bool writeItem(JsonWriter &writer, const ChecklistItem &item) {
    const auto id = uuidText(item.id());
    return writer.StartObject() && writer.Key("id", 2) && writer.String(id.data(), rapidjson::SizeType(id.size())) &&
           writer.Key("text", 4) && writeText(writer, item.text()) && writer.Key("isDone", 6) &&
           writer.Bool(item.isDone()) && writer.EndObject();
}

QByteArray quoted(std::string_view key) {
    return '"' + QByteArray(key.data(), qsizetype(key.size())) + '"';
}

/// `"key":[…]`; empty text when an element cannot be written.
template <typename Elements, typename Write>
QByteArray arrayMember(std::string_view key, const Elements &elements, Write write) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartArray();
    for (const auto &element : elements) {
        if (!write(writer, element)) {
            return {};
        }
    }
    writer.EndArray();
    return quoted(key) + ':' + QByteArrayView(buffer.GetString(), qsizetype(buffer.GetSize()));
}

} // namespace

void Block::setPayloadMember(const QByteArray &key, const QByteArray &member) {
    setContent(payloadWith(content(), key, member));
}

void Block::setContentField(const QString &key, const AnyCodable &value) {
    AnyCodable::Object object;
    object.set(key, value);
    if (const auto json = AnyCodable(std::move(object)).toJson()) {
        const QByteArrayView member = QByteArrayView(*json).sliced(1, json->size() - 2);
        setPayloadMember(member.first(endOfJsonString(member, 0)).toByteArray(), member.toByteArray());
    }
}

std::optional<AnyCodable> Block::contentField(const QString &key) const {
    const auto payload = AnyCodable::fromJson(content());
    const auto *object = payload ? std::get_if<AnyCodable::Object>(&payload->value()) : nullptr;
    if (!object) {
        return std::nullopt;
    }
    const auto &members = object->members();
    const auto member = std::ranges::find(members, key, &AnyCodable::Member::key);
    return member == members.end() ? std::nullopt : std::optional(member->value);
}

QString Block::checklistTitle() const {
    return payloadValue(content(), key::title, json::readString).value_or(QString());
}

std::vector<ChecklistItemPtr> Block::checklistItems() const {
    return payloadValue(content(), key::items, readItems).value_or(std::vector<ChecklistItemPtr>());
}

void Block::setChecklistItems(const std::vector<ChecklistItemPtr> &items) {
    setPayloadMember(quoted(key::items), arrayMember(key::items, items, [](JsonWriter &writer, const auto &item) {
                         return writeItem(writer, *item);
                     }));
}

std::vector<QStringList> Block::tableData() const {
    return payloadValue(content(), key::cells, readRows).value_or(Table());
}

void Block::setTableData(const std::vector<QStringList> &rows) {
    const auto writeRow = [](JsonWriter &writer, const QStringList &row) {
        return writer.StartArray() &&
               std::ranges::all_of(row, [&](const QString &cell) { return writeText(writer, cell); }) &&
               writer.EndArray();
    };
    const qsizetype columns = rows.empty() ? 0 : rows.front().size();
    setContent("{\"rows\":" + QByteArray::number(qsizetype(rows.size())) +
               ",\"columns\":" + QByteArray::number(columns) + ',' + arrayMember(key::cells, rows, writeRow) + '}');
}

ShapeType Block::shapeType() const {
    const auto name = payloadValue(content(), key::shapeType, json::readString);
    return shapeTypeFromRawValue(name.value_or(QString())).value_or(ShapeType::rectangle);
}

void Block::setShapeType(ShapeType type) {
    setContentField(QString(QLatin1StringView(key::shapeType.data())), QString(rawValue(type)));
}

QString Block::fillColor() const {
    const QString color = payloadValue(content(), key::fillColor, json::readString).value_or(QString());
    return isColor(color) ? color : defaultFillColor();
}

QString Block::strokeColor() const {
    const QString color = payloadValue(content(), key::strokeColor, json::readString).value_or(QString());
    return isColor(color) ? color : defaultStrokeColor();
}

double Block::strokeWidth() const {
    return payloadValue(content(), key::strokeWidth, json::readDouble).value_or(kDefaultStrokeWidth);
}

std::vector<SketchStroke> Block::sketchStrokes() const {
    return payloadValue(content(), key::strokes, readStrokes).value_or(std::vector<SketchStroke>());
}

void Block::setSketchStrokes(const std::vector<SketchStroke> &strokes) {
    if (const QByteArray member = arrayMember(key::strokes, strokes, writeStroke); !member.isEmpty()) {
        setPayloadMember(quoted(key::strokes), member);
    }
}

std::optional<QString> Block::mediaFileName() const {
    return payloadValue(content(), key::fileName, json::readString);
}

void Block::setMediaFileName(const std::optional<QString> &name) {
    if (name) {
        setContentField(QString(QLatin1StringView(key::fileName.data())), *name);
    } else {
        setPayloadMember(quoted(key::fileName), {});
    }
}

double Block::mediaDuration() const {
    return payloadValue(content(), key::duration, json::readDouble).value_or(0);
}

void Block::setMediaDuration(double seconds) {
    setContentField(QString(QLatin1StringView(key::duration.data())), seconds);
}

QString Block::iconName() const {
    return payloadValue(content(), key::iconName, json::readString).value_or(QStringLiteral("star"));
}

std::optional<QByteArray> imageDataIn(const QByteArray &content) {
    auto bytes = payloadValue(content, key::image, readBase64);
    return bytes && !bytes->isEmpty() ? std::move(bytes) : std::nullopt;
}

std::optional<QByteArray> Block::imageData() const {
    return imageDataIn(content());
}

bool Block::flipHorizontal() const {
    return payloadValue(content(), key::flipHorizontal, json::readBoolean).value_or(false);
}

bool Block::flipVertical() const {
    return payloadValue(content(), key::flipVertical, json::readBoolean).value_or(false);
}

void Block::recomputeSketchBounds(double padding) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    double minX = kInfinity;
    double minY = kInfinity;
    double maxX = -kInfinity;
    double maxY = -kInfinity;
    for (const SketchStroke &stroke : sketchStrokes()) {
        for (const SketchPoint &point : stroke.points) {
            minX = std::min(minX, point.x);
            minY = std::min(minY, point.y);
            maxX = std::max(maxX, point.x);
            maxY = std::max(maxY, point.y);
        }
    }
    if (minX > maxX) {
        return;
    }
    setXPosition(minX - padding);
    setYPosition(minY - padding);
    setWidth(std::max(maxX - minX + 2 * padding, kSmallestSketchSide));
    setHeight(std::max(maxY - minY + 2 * padding, kSmallestSketchSide));
}

void Block::shiftSketchPoints(double dx, double dy) {
    if (dx == 0 && dy == 0) {
        return;
    }
    auto strokes = sketchStrokes();
    if (strokes.empty()) {
        return;
    }
    for (SketchStroke &stroke : strokes) {
        for (SketchPoint &point : stroke.points) {
            point.x += dx;
            point.y += dy;
        }
    }
    setSketchStrokes(strokes);
}

} // namespace tallowby
