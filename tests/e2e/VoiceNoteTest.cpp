#include "e2e/Desk.h"
#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace tallowby::test {

class VoiceNote : public Desk {
protected:
    [[nodiscard]] QJsonObject payload() const {
        const QJsonArray records = notes();
        return records.isEmpty() ? QJsonObject() : records.first().toObject()[u"content"].toObject();
    }
};

TEST_F(VoiceNote, IsMadeRecordedAndPlayedAndIsThereAfterARestart) {
    environment().insert(QStringLiteral("TALLOWBY_AUDIO_SOURCE"), QStringLiteral("audiotestsrc"));
    environment().insert(QStringLiteral("TALLOWBY_AUDIO_SINK"), QStringLiteral("fakesink"));
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
    pointer.click(kScreenCentre + QPoint(60, -30)); // Selects it.
    keyboard.tap(XK_Return);                        // Plays it.
    const QRect card(kScreenCentre - QPoint(130, 70), QSize(260, 140));
    EXPECT_TRUE(eventually([&] { return isAccentIn(card.adjusted(20, 40, -20, -20)); })) << "what was played";
    EXPECT_FALSE(program().hasSaid(u"Playback failed"));
}

} // namespace tallowby::test
