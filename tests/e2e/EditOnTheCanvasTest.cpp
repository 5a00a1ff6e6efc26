#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QJsonObject>

#include <cmath>

namespace tallowby::test {

namespace {

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

} // namespace

using EditOnTheCanvas = Desk;

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
    // It is seen a moment before it takes the keyboard.
    ASSERT_TRUE(eventually([&] {
        keyboard.tap(XK_Escape);
        return picture(surroundings) == before;
    }));
    keyboard.type(u"on with it");
    EXPECT_TRUE(notesBecome({QStringLiteral("first"), QStringLiteral("on with it")}));
}

} // namespace tallowby::test
