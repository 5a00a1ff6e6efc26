#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QColor>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <cstdlib>

namespace tallowby::test {

class Recordings : public Desk {
protected:
    void SetUp() override {
        Desk::SetUp();
        environment().insert(QStringLiteral("TALLOWBY_AUDIO_SOURCE"), QStringLiteral("audiotestsrc"));
        environment().insert(QStringLiteral("TALLOWBY_VIDEO_SOURCE"), QStringLiteral("videotestsrc"));
        environment().insert(QStringLiteral("TALLOWBY_AUDIO_SINK"), QStringLiteral("fakesink"));
    }
    /// Whether the yellow and the cyan bar of the test card are to be seen there.
    [[nodiscard]] bool isTestCardIn(QRect area) const {
        const QImage seen = picture(area);
        int yellow = 0;
        int cyan = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                const QColor color(seen.pixel(x, y));
                const bool isPure = color.saturation() > 180 && color.value() > 120;
                yellow += isPure && std::abs(color.hue() - 60) < 12 ? 1 : 0;
                cyan += isPure && std::abs(color.hue() - 180) < 12 ? 1 : 0;
            }
        }
        return yellow > 1'000 && cyan > 1'000;
    }
    void select(QRect card) {
        ASSERT_TRUE(eventually([&] { return inkIn(card) > 0; }));
        pointer.click(card.topLeft() + QPoint(200, 20));
        ASSERT_TRUE(eventually([&] { return isAccentIn(card.adjusted(-10, -10, 10, 10)); }));
    }
    [[nodiscard]] QJsonObject payload() const {
        const QJsonArray records = notes();
        return records.isEmpty() ? QJsonObject() : records.first().toObject()[u"content"].toObject();
    }
};

TEST_F(Recordings, AVoiceNoteIsMadeRecordedAndPlayedAndIsThereAfterARestart) {
    startProgram();
    openCanvas();
    pointer.moveTo(kScreenCentre);
    keyboard.tap(XK_9); // The tool of the voice note.
    pointer.click(kScreenCentre);
    ASSERT_TRUE(eventually([this] { return notes().size() == 1; }));
    keyboard.tap(XK_Return); // Records it.
    ASSERT_TRUE(eventually([this] { return !payload()[u"fileName"].toString().isEmpty(); }));
    const QString file = dataFolder() + QStringLiteral("/media/") + payload()[u"fileName"].toString();
    ASSERT_TRUE(eventually([&] { return QFile(file).size() > 4'000; }));
    keyboard.tap(XK_Return);
    ASSERT_TRUE(eventually([this] { return payload()[u"duration"].toDouble() > 0.5; }));
    EXPECT_EQ(QFile(file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    endProgram();

    startProgram();
    openCanvas();
    const QRect card(kScreenCentre - QPoint(120, 55), QSize(240, 110));
    select(card);
    keyboard.tap(XK_Return); // Plays it.
    EXPECT_TRUE(eventually([&] { return isAccentIn(card.adjusted(10, 30, -10, -10)); })) << "what was played";
    EXPECT_FALSE(program().hasSaid(u"Playback failed"));
}

TEST_F(Recordings, AFilmIsSeenWhileItIsRecordedAndAfterARestart) {
    ASSERT_TRUE(QDir().mkpath(dataFolder()));
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(R"([{"id":"57124242-5051-41CC-917F-9ACAE01F5057","user_id":"00000000-0000-4000-8000-00000000D0DE",)"
               R"("x_position":-150,"y_position":-110,"width":300,"height":220,"z_index":1,"block_type":"video_note",)"
               R"("tags":[],"is_todo":false,"is_event":false,"created_at":785000000,"updated_at":785000000,)"
               R"("font_size":16,"text_color":"#000000","rotation":0,"is_bold":false,"is_italic":false,)"
               R"("is_strikethrough":false}])");
    file.close();
    const QRect card(kScreenCentre - QPoint(150, 110), QSize(300, 220));
    startProgram();
    openCanvas();
    select(card);
    keyboard.tap(XK_Return); // Records it.
    ASSERT_TRUE(eventually([&] { return isTestCardIn(card); })) << "what the camera sees";
    const QRect snow(card.topLeft() + QPoint(230, 170), QSize(50, 20)); // In a corner of the test card.
    const QImage moment = picture(snow);
    EXPECT_TRUE(eventually([&] { return picture(snow) != moment; })) << "and goes on seeing";
    const auto recording = [this]() -> QString {
        return dataFolder() + QStringLiteral("/media/") + payload()[u"fileName"].toString();
    };
    ASSERT_TRUE(eventually([&] { return QFile(recording()).size() > 60'000; }));
    keyboard.tap(XK_Return);
    ASSERT_TRUE(eventually([this] { return payload()[u"duration"].toDouble() > 0.5; }));
    EXPECT_EQ(QFile(recording()).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_TRUE(eventually([&] { return isTestCardIn(card); })) << "the first picture of the film";
    closeCanvas();
    endProgram();

    startProgram();
    openCanvas();
    EXPECT_TRUE(eventually([&] { return isTestCardIn(card); }));
    pointer.click(card.center());
    EXPECT_FALSE(program().hasSaid(u"Playback failed"));

    // A crash in the middle of another film costs nothing but its last second.
    const QString first = payload()[u"fileName"].toString();
    pointer.click({card.left() + 30, card.bottom() - 13}); // "Re-record"
    ASSERT_TRUE(eventually([&] { return payload()[u"fileName"].toString() != first; }))
        << "it is named while it is filmed";
    ASSERT_TRUE(eventually([&] { return QFile(recording()).size() > 1'200'000; }));
    program().send(SIGKILL);
    EXPECT_EQ(program().exitCode(), -1);
    startProgram();
    openCanvas();
    EXPECT_TRUE(eventually([&] { return isTestCardIn(card); }));
    EXPECT_TRUE(eventually([this] { return payload()[u"duration"].toDouble() > 1; })) << "its length is in the file";
    pointer.click({card.left() + 100, card.bottom() - 13}); // "Restore previous"
    EXPECT_TRUE(eventually([&] { return payload()[u"fileName"].toString() == first; }));
}

} // namespace tallowby::test
