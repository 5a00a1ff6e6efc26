#include "SceneFile.h"

#include "model/AnyCodable.h"
#include "storage/file/BlockFile.h"

#include <QPolygonF>
#include <QRectF>
#include <QStringList>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <random>

namespace tallowby::bench {

namespace {

constexpr double kGap = 60;
constexpr QSizeF kStickySize{200, 200};
constexpr QSizeF kTextSize{300, 200};
constexpr QSizeF kShapeSize{220, 140};
constexpr double kColumnWidth = 300 + kGap;
constexpr double kRowHeight = 200 + kGap;
constexpr int kTextLength = 40;
constexpr int kHeavyItems = 5;
constexpr int kHeavyTextLength = 52;
constexpr QRectF kStrokesArea(-880, -480, 1760, 960);
constexpr int kStrokePoints = 100;
constexpr int kSketchStrokes = 500;
/// In points, from one point of a stroke to the next.
constexpr double kStrokeStep = 4;
/// What a sketch's frame leaves around its strokes.
constexpr double kSketchPadding = 40;
/// 2025-01-29, so that equal seeds give equal files.
constexpr double kFirstDay = 760'000'000;

/// std::mt19937 gives the same numbers everywhere; the distributions of the library need not.
class Dice {
public:
    explicit Dice(std::uint32_t seed)
        : m_engine(seed) {}
    std::uint32_t below(std::uint32_t limit) { return std::uint32_t(m_engine() % limit); }
    QUuid uuid() {
        return {std::uint32_t(m_engine()),
                ushort(m_engine()),
                ushort(m_engine()),
                byte(),
                byte(),
                byte(),
                byte(),
                byte(),
                byte(),
                byte(),
                byte()};
    }

private:
    uchar byte() { return uchar(m_engine()); }

    std::mt19937 m_engine;
};

QString sentence(Dice &dice, int length) {
    static const QStringList words = QStringLiteral("paper ink card turn note tea plan north river seven light small "
                                                    "garden letter window café harbour idea draft monday")
                                         .split(u' ');
    QString text;
    while (text.size() < length) {
        text += words.at(dice.below(std::uint32_t(words.size()))) + u' ';
    }
    text.truncate(length);
    return text;
}

/// Lines as a checklist has them, about 700 bytes together.
AnyCodable heavyItems(Dice &dice) {
    AnyCodable::Array items;
    for (int next = 0; next < kHeavyItems; ++next) {
        AnyCodable::Object item;
        item.set(QStringLiteral("id"), dice.uuid().toString(QUuid::WithoutBraces).toUpper());
        item.set(QStringLiteral("text"), sentence(dice, kHeavyTextLength));
        item.set(QStringLiteral("isDone"), dice.below(2) == 0);
        items.emplace_back(std::move(item));
    }
    return items;
}

void fillKind(BlockFields &fields, std::size_t place, AnyCodable::Object &payload, Dice &dice) {
    switch (place % 3) {
    case 0:
        fields.blockType = BlockType::stickyNote;
        fields.width = kStickySize.width();
        fields.height = kStickySize.height();
        fields.rawText = sentence(dice, kTextLength);
        break;
    case 1:
        fields.blockType = BlockType::text;
        fields.width = kTextSize.width();
        fields.height = kTextSize.height();
        fields.rawText = sentence(dice, kTextLength);
        break;
    default:
        fields.blockType = BlockType::shape;
        fields.width = kShapeSize.width();
        fields.height = kShapeSize.height();
        fields.rawText = sentence(dice, kTextLength / 3);
        payload.set(QStringLiteral("shapeType"), QString(rawValue(ShapeType::rectangle)));
        payload.set(QStringLiteral("strokeWidth"), 2.0);
        break;
    }
}

double between(Dice &dice, double low, double high) {
    return low + (high - low) * dice.below(10'000) / 10'000.0;
}

/// A line that keeps turning, as a hand draws it. Where it goes.
QRectF addStroke(AnyCodable::Array &strokes, Dice &dice) {
    static const QStringList colors = QStringLiteral("#333333 #2F6BEB #C8372D #34C759").split(u' ');
    QPointF at(between(dice, kStrokesArea.left(), kStrokesArea.right()),
               between(dice, kStrokesArea.top(), kStrokesArea.bottom()));
    double heading = between(dice, 0, 2 * std::numbers::pi);
    double turn = 0;
    QPolygonF line;
    AnyCodable::Array points;
    for (int next = 0; next < kStrokePoints; ++next) {
        line << at;
        AnyCodable::Object point;
        point.set(QStringLiteral("x"), at.x());
        point.set(QStringLiteral("y"), at.y());
        point.set(QStringLiteral("pressure"), 1.0);
        points.emplace_back(std::move(point));
        turn = 0.8 * turn + between(dice, -0.15, 0.15);
        heading += turn;
        at += kStrokeStep * QPointF(std::cos(heading), std::sin(heading));
    }
    AnyCodable::Object stroke;
    stroke.set(QStringLiteral("points"), std::move(points));
    stroke.set(QStringLiteral("color"), colors.at(dice.below(std::uint32_t(colors.size()))));
    stroke.set(QStringLiteral("width"), double(2 + dice.below(5)));
    strokes.emplace_back(std::move(stroke));
    return line.boundingRect();
}

void fillSketch(BlockFields &fields, AnyCodable::Object &payload, int strokeCount, Dice &dice) {
    AnyCodable::Array strokes;
    QRectF reach;
    for (int i = 0; i < strokeCount; ++i) {
        reach |= addStroke(strokes, dice);
    }
    payload.set(QStringLiteral("strokes"), std::move(strokes));
    const QRectF frame = reach.adjusted(-kSketchPadding, -kSketchPadding, kSketchPadding, kSketchPadding);
    fields.blockType = BlockType::sketch;
    fields.xPosition = frame.x();
    fields.yPosition = frame.y();
    fields.width = frame.width();
    fields.height = frame.height();
}

} // namespace

std::vector<SharedBlockFields> sceneRecords(const Scene &scene) {
    Dice dice(scene.seed);
    const QUuid userId = dice.uuid();
    const auto columns = std::size_t(std::ceil(std::sqrt(double(scene.blockCount))));
    std::vector<SharedBlockFields> records;
    records.reserve(scene.blockCount);
    for (std::size_t place = 0; place < scene.blockCount; ++place) {
        SharedBlockFields fields(new BlockFields);
        AnyCodable::Object payload;
        fields->id = dice.uuid();
        fields->userId = userId;
        fields->xPosition = (double(place % columns) - double(columns) / 2) * kColumnWidth;
        fields->yPosition = (double(place / columns) - double(columns) / 2) * kRowHeight;
        fields->zIndex = std::int64_t(place);
        fields->createdAt.secondsSinceReference = kFirstDay + double(place) + dice.below(1'000'000) / 1e6;
        fields->updatedAt = fields->createdAt;
        switch (scene.kind) {
        case Scene::Kind::strokes:
            fillSketch(*fields, payload, 1, dice);
            break;
        case Scene::Kind::sketch:
            fillSketch(*fields, payload, kSketchStrokes, dice);
            break;
        case Scene::Kind::heavyGrid:
            fillKind(*fields, place, payload, dice);
            payload.set(QStringLiteral("items"), heavyItems(dice));
            break;
        case Scene::Kind::grid:
            fillKind(*fields, place, payload, dice);
            break;
        }
        if (!payload.members().empty()) {
            fields->content = AnyCodable(std::move(payload)).toJson().value_or(QByteArray());
        }
        records.push_back(std::move(fields));
    }
    return records;
}

void writeSceneFile(const Scene &scene, const QString &path) {
    const auto outcome = BlockFile(path).write(RecordPages(sceneRecords(scene)).snapshot({}), {});
    if (!std::holds_alternative<BlockFile::Change>(outcome)) {
        std::fprintf(stderr, "cannot write the scene to %s\n", qUtf8Printable(path));
        std::exit(EXIT_FAILURE);
    }
}

} // namespace tallowby::bench
