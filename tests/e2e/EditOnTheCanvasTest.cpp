#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QUuid>

#include <cmath>

namespace tallowby::test {

namespace {

constexpr double kGridStep = 50;

/// The record of the note that has this text.
QJsonObject noteOf(const QJsonArray &notes, const QString &text) {
    for (const QJsonValue &note : notes) {
        if (note[u"raw_text"] == text) {
            return note.toObject();
        }
    }
    return {};
}

double number(const QJsonObject &note, QStringView key) {
    return note[key].toDouble();
}

/// What a person sees of the notes: when they were changed last is no part of it.
QJsonArray seen(const QJsonArray &notes) {
    QJsonArray result;
    for (const QJsonValue &note : notes) {
        QJsonObject record = note.toObject();
        record.remove(QStringLiteral("updated_at"));
        result << record;
    }
    return result;
}

/// As the file has it; `more` is what the kind needs, with a comma before it.
QByteArray record(int depth, const QByteArray &kind, QPoint corner, const QByteArray &more) {
    const QByteArray number = QByteArray::number(depth);
    return R"({"id":"57124242-5051-41CC-917F-9ACAE01F505)" + number +
           R"(","user_id":"00000000-0000-4000-8000-00000000D0DE","x_position":)" + QByteArray::number(corner.x()) +
           R"(,"y_position":)" + QByteArray::number(corner.y()) + R"(,"width":280,"height":100,"z_index":)" + number +
           R"(,"block_type":")" + kind + R"(","tags":[],"is_todo":false,"is_event":false,"created_at":785000000,)" +
           R"("updated_at":785000000,"font_size":16,"text_color":"#000000","rotation":0,"is_bold":false,)" +
           R"("is_italic":false,"is_strikethrough":false)" + more + '}';
}

/// What the file holds of a grid of shapes around the middle of the screen.
QJsonArray grid(int columns, int rows) {
    QJsonArray records;
    for (int i = 0; i < columns * rows; ++i) {
        const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        const double x = kGridStep * (i % columns - columns / 2);
        const double y = kGridStep * (i / columns - rows / 2);
        records << QJsonObject{{QStringLiteral("id"), id},
                               {QStringLiteral("user_id"), id},
                               {QStringLiteral("x_position"), x},
                               {QStringLiteral("y_position"), y},
                               {QStringLiteral("width"), kGridStep / 2},
                               {QStringLiteral("height"), kGridStep / 2},
                               {QStringLiteral("z_index"), i},
                               {QStringLiteral("block_type"), QStringLiteral("shape")},
                               {QStringLiteral("created_at"), 760'000'000},
                               {QStringLiteral("updated_at"), 760'000'000}};
    }
    return records;
}

QMap<QString, QPointF> placesOf(const QJsonArray &notes) {
    QMap<QString, QPointF> places;
    for (const QJsonValue &note : notes) {
        places.insert(note[u"id"].toString(), {note[u"x_position"].toDouble(), note[u"y_position"].toDouble()});
    }
    return places;
}

} // namespace

using EditOnTheCanvas = Desk;

TEST_F(EditOnTheCanvas, ThoughtsTypedWithThePointerAtRestFormAColumnAndLoseNothing) {
    const QStringList thoughts{QStringLiteral("call the plumber"), QStringLiteral("14:30 dentist"),
                               QStringLiteral("3 eggs, 2 onions"), QStringLiteral("? why"), QStringLiteral("1984")};
    startProgram();
    openCanvas();
    // At the lower edge, where the tools are.
    pointer.moveTo({700, kScreenSize.height() - 20});
    for (const QString &thought : thoughts) {
        keyboard.type(thought);
        keyboard.tap(XK_Return);
    }
    ASSERT_TRUE(notesBecome(thoughts));
    const QJsonArray typed = notes();
    for (qsizetype i = 1; i < thoughts.size(); ++i) {
        const QJsonObject above = noteOf(typed, thoughts[i - 1]);
        const QJsonObject below = noteOf(typed, thoughts[i]);
        EXPECT_NEAR(number(below, u"x_position"), number(above, u"x_position"), 1) << qPrintable(thoughts[i]);
        EXPECT_NEAR(number(below, u"y_position"), number(above, u"y_position") + number(above, u"height") + 12, 1.5)
            << qPrintable(thoughts[i]);
    }
    // Control+Z takes back the last thought whole.
    keyboard.chord(XK_Control_L, XK_z);
    EXPECT_TRUE(notesBecome(thoughts.first(4)));
    keyboard.chord(XK_Control_L, XK_y);
    EXPECT_TRUE(notesBecome(thoughts));

    // The paper follows a sentence that is longer than the screen is wide, and a text left empty is no note.
    pointer.moveTo({1'100, 200});
    const QString sentence =
        QStringLiteral("a sentence that is far too long for the place where it was begun, ").repeated(2);
    keyboard.type(sentence);
    EXPECT_TRUE(eventually([this] { return inkIn(QRect(1'000, 150, 190, 120)) > 0.005; }));
    EXPECT_EQ(inkIn(QRect(1'210, 150, 65, 120)), 0) << "the caret keeps its distance from the edge";
    keyboard.tap(XK_Return);
    keyboard.tap(XK_5);
    pointer.click({300, 600});
    closeCanvas();
    EXPECT_TRUE(notesBecome(thoughts + QStringList{sentence}));
    openCanvas();
    pointer.moveTo({300, 300});
    keyboard.type(u"and back");
    EXPECT_TRUE(notesBecome(thoughts + QStringList{sentence, QStringLiteral("and back")}));
}

TEST_F(EditOnTheCanvas, AddItemAtRestTypesIntoThatListAndNothingElse) {
    ASSERT_TRUE(QDir().mkpath(dataFolder()));
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write('[' + record(1, "checklist", {-300, -150}, R"(,"content":{"title":"","items":[{"text":"Milk"}]})") +
               ',' + record(2, "table", {100, -150}, R"(,"content":{"cells":[["Piece","Cost"]]})") + ',' +
               record(3, "code", {100, 50}, R"(,"raw_text":"// 1")") + ']');
    file.close();
    startProgram();
    openCanvas();
    // Title and one item lie above the line.
    const QPoint words = kScreenCentre + QPoint(-300 + 60, -150 + 36 + 28 + 17);
    pointer.click(words);
    // Keys may overtake a click: a person sees first what it did.
    ASSERT_TRUE(eventually([&] { return isAccentIn(QRect(words - QPoint(70, 60), QSize(140, 120))); }));
    keyboard.type(u"Buy stamps");
    keyboard.tap(XK_Escape);
    const auto contentOf = [this](const QString &kind) {
        for (const QJsonValue &note : notes()) {
            if (note[u"block_type"] == kind) {
                return note[u"content"].toObject();
            }
        }
        return QJsonObject();
    };
    EXPECT_TRUE(eventually(
        [&] { return contentOf(QStringLiteral("checklist"))[u"items"][1][u"text"] == QStringLiteral("Buy stamps"); }));
    EXPECT_EQ(contentOf(QStringLiteral("table"))[u"cells"][0][0], QStringLiteral("Piece"));
    EXPECT_FALSE(noteOf(notes(), QStringLiteral("// 1")).isEmpty());
}

TEST_F(EditOnTheCanvas, EveryGestureReachesTheFileAndUndoTakesAllOfThemBack) {
    const QString text = QStringLiteral("Anchor");
    startProgram();
    openCanvas();
    pointer.moveTo(kScreenCentre + QPoint(-200, -100));
    keyboard.type(text);
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({text}));
    const QJsonArray before = seen(notes());
    QJsonObject note = noteOf(before, text);
    const auto noteBecomes = [&](QStringView key, double value) {
        return eventually([&] {
            note = noteOf(notes(), text);
            return std::abs(number(note, key) - value) < 1;
        });
    };
    // A point of the note on screen, by shares of its sides.
    const auto pointOf = [&](double acrossShare, double downShare) {
        return kScreenCentre + QPointF(number(note, u"x_position") + acrossShare * number(note, u"width"),
                                       number(note, u"y_position") + downShare * number(note, u"height"))
                                   .toPoint();
    };

    const double x = number(note, u"x_position");
    pointer.drag(pointOf(0.5, 0.5), pointOf(0.5, 0.5) + QPoint(150, 60));
    ASSERT_TRUE(noteBecomes(u"x_position", x + 150));
    const double width = number(note, u"width");
    pointer.drag(pointOf(1, 1) + QPoint(4, 4), pointOf(1, 1) + QPoint(104, 84));
    ASSERT_TRUE(noteBecomes(u"width", width + 100));
    pointer.drag(pointOf(0.5, 0) - QPoint(0, 28), pointOf(0.5, 0) + QPoint(60, -28));
    ASSERT_TRUE(noteBecomes(u"rotation", 30));

    const QPoint sketch = kScreenCentre + QPoint(-100, 150);
    const QRect paper(sketch, QSize(120, 60));
    const QImage blank = picture(paper);
    keyboard.tap(XK_3);
    pointer.drag(sketch, sketch + QPoint(120, 60));
    ASSERT_TRUE(eventually([&] { return notes().size() == 2; }));
    EXPECT_TRUE(eventually([&] { return picture(paper) != blank; }));
    keyboard.tap(XK_4);
    pointer.click(sketch + QPoint(60, 30));
    ASSERT_TRUE(eventually([&] { return notes().size() == 1; }));

    for (int change = 0; change < 5; ++change) {
        keyboard.chord(XK_Control_L, XK_z);
    }
    EXPECT_TRUE(eventually([&] { return seen(notes()) == before; }));
    EXPECT_TRUE(eventually([&] { return picture(paper) == blank; }));
}

TEST_F(EditOnTheCanvas, OneUndoTakesBackTenThatWereDraggedAndTwoHundredThatWereDeleted) {
    ASSERT_TRUE(QDir().mkpath(dataFolder()));
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(QJsonDocument(grid(20, 10)).toJson());
    file.close();
    const auto before = placesOf(notes());
    ASSERT_EQ(before.size(), 200);
    const auto becomes = [this](const QMap<QString, QPointF> &places) {
        return eventually([&] { return placesOf(notes()) == places; });
    };
    startProgram();
    openCanvas();
    // The left half of the uppermost row.
    const QPoint corner = kScreenCentre - QPoint(500, 250);
    keyboard.press(XK_Shift_L);
    pointer.drag(corner - QPoint(10, 10), corner + QPoint(460, 30));
    keyboard.release(XK_Shift_L);
    pointer.drag(corner + QPoint(12, 12), corner + QPoint(12, -88));
    auto dragged = before;
    for (QPointF &place : dragged) {
        place.ry() -= place.y() == -250 && place.x() < 0 ? 100 : 0;
    }
    ASSERT_TRUE(becomes(dragged));
    keyboard.chord(XK_Control_L, XK_z);
    EXPECT_TRUE(becomes(before));
    keyboard.chord(XK_Control_L, XK_y);
    EXPECT_TRUE(becomes(dragged));

    keyboard.chord(XK_Control_L, XK_a);
    keyboard.tap(XK_Delete);
    ASSERT_TRUE(becomes({}));
    keyboard.chord(XK_Control_L, XK_z);
    EXPECT_TRUE(becomes(dragged));
    keyboard.chord(XK_Control_L, XK_y);
    EXPECT_TRUE(becomes({}));
    keyboard.chord(XK_Control_L, XK_z);
    EXPECT_TRUE(becomes(dragged));
}

TEST_F(EditOnTheCanvas, APictureIsChosenOverTheCanvasAndGivingUpLeavesNothing) {
    startProgram();
    openCanvas();
    // By the time that it is on disk, nothing on screen moves any more.
    keyboard.type(u"first");
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({QStringLiteral("first")}));
    const QPoint place = kScreenCentre + QPoint(100, 100);
    const QRect surroundings(kScreenCentre - QPoint(100, 100), QSize(200, 200));
    const QImage before = picture(surroundings);
    keyboard.tap(XK_7);
    pointer.click(place);
    ASSERT_TRUE(eventually([&] { return picture(surroundings) != before; })) << "the dialogue lies over the canvas";
    closeCanvas();
    openCanvas();
    EXPECT_TRUE(eventually([&] { return picture(surroundings) == before; })) << "it went with the turn";
    keyboard.tap(XK_7);
    pointer.click(place);
    ASSERT_TRUE(eventually([&] { return picture(surroundings) != before; }));
    // It is seen a moment before it takes the keyboard.
    ASSERT_TRUE(eventually([&] {
        keyboard.tap(XK_Escape);
        return picture(surroundings) == before;
    }));
    keyboard.type(u"on with it");
    EXPECT_TRUE(notesBecome({QStringLiteral("first"), QStringLiteral("on with it")}));
}

} // namespace tallowby::test
