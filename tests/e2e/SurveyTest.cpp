#include "e2e/BackendOnLoopback.h"
#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "e2e/WindowList.h"
#include "support/bus/TrayHost.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>

namespace tallowby::test {

namespace {

const QString kWindow = QStringLiteral("Tallowby Feedback");
/// Rows of the window's menu, in points below its upper edge.
constexpr int kCutRow = 226;
constexpr int kSelectAllRow = 310;

} // namespace

class Survey : public Desk {
protected:
    BackendOnLoopback backend;
    WindowList windows{session.display()};

    void SetUp() override {
        Desk::SetUp();
        setKept("tallowby.hasSeenCanvasTutorial=true\n");
        environment().insert(QStringLiteral("TALLOWBY_SUPABASE_URL"), backend.address());
        environment().insert(QStringLiteral("TALLOWBY_AUDIO_SOURCE"), QStringLiteral("audiotestsrc"));
        environment().insert(QStringLiteral("TALLOWBY_AUDIO_SINK"), QStringLiteral("fakesink"));
    }
    /// Submit, and Close after it.
    [[nodiscard]] QRect button() const {
        return {windows.frame(kWindow).bottomRight() - QPoint(110, 70), QSize(90, 50)};
    }
    void press() {
        pointer.moveTo(windows.frame(kWindow).topLeft()); // Under the pointer it has another colour.
        ASSERT_TRUE(eventually([this] { return isAccentIn(button()); })) << "the button cannot be pressed";
        pointer.click(button().center());
    }
    void chooseInMenu(int rowHeight) {
        const QPoint corner = windows.frame(kWindow).topRight();
        const QRect menu(corner + QPoint(-200, 150), QSize(100, 150));
        const QImage before = picture(menu);
        pointer.click(corner + QPoint(-56, 26));
        ASSERT_TRUE(eventually([&] { return picture(menu) != before; }));
        pointer.click(corner + QPoint(-140, rowHeight));
    }
    /// True while the first word of the answer is selected.
    [[nodiscard]] bool isAnswerSelected() const {
        return isAccentIn({windows.frame(kWindow).bottomLeft() + QPoint(44, -120), QSize(16, 14)});
    }
    /// All five, by keyboard.
    void answerQuestions() {
        ASSERT_TRUE(eventually([this] { return windows.isActive(kWindow); }));
        EXPECT_FALSE(isAccentIn(button()));
        keyboard.tap(XK_Tab);
        keyboard.tap(XK_space);
        keyboard.tap(XK_Tab); // Past the other options of the first question.
        keyboard.tap(XK_Down);
        for (int question = 3; question <= 5; ++question) {
            keyboard.tap(XK_Tab);
            keyboard.tap(XK_space);
        }
    }
    /// The row that answers it like that, from `"open_text"` on.
    [[nodiscard]] static std::string row(const std::string &end) {
        return R"({"app_version":")" TALLOWBY_VERSION R"(","usage_frequency":"Multiple times a day",)"
               R"("overall_experience":"Good","most_used_feature":"Text notes","blocker":"Nothing, it's great",)"
               R"("would_recommend":"Definitely",)" +
               end;
    }
    [[nodiscard]] QString recording() const {
        const QDir media(dataFolder() + QStringLiteral("/media"));
        const QStringList names = media.entryList({QStringLiteral("*-feedback.m4a")});
        return names.size() == 1 ? media.filePath(names.first()) : QString();
    }
    [[nodiscard]] static QByteArray contents(const QString &path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(Survey, IsAnsweredByKeyboardAndVoiceSentOnceAndNeverOfferedAgain) {
    startProgram();
    openCanvas(); // By then it would have come.
    ASSERT_FALSE(windows.has(kWindow)) << "at the first start there is nothing to ask for yet";
    endProgram();
    startProgram();
    answerQuestions();
    ASSERT_TRUE(eventually([this] { return isAccentIn(button()); }));
    keyboard.tap(XK_Tab);
    keyboard.type(u"More, please");
    keyboard.tap(XK_Tab);
    keyboard.tap(XK_space); // Records.
    ASSERT_TRUE(eventually([this] { return QFile(recording()).size() > 4'000; }));
    keyboard.tap(XK_space);

    backend.fault = Fault::outOfOrder;
    press();
    ASSERT_TRUE(program().says(u"[FeedbackService] ❌ Voice note upload failed (500): <html>out of order</html>"));
    const QByteArray sound = contents(recording());
    ASSERT_TRUE(sound.contains("moov"));
    backend.fault = Fault::none;
    press();
    ASSERT_TRUE(program().says(u"[FeedbackService] ✅ Feedback submitted"));
    const auto uploads = backend.posted(u"/storage/v1/object/feedback-audio/");
    const auto rows = backend.posted(u"/rest/v1/feedback_responses");
    ASSERT_EQ(uploads.size(), 1U);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(uploads.front().body, sound);
    EXPECT_EQ(rows.front().body.toStdString(), row(R"("open_text":"More, please","voice_note_path":"feedback-audio/)" +
                                                   uploads.front().url.fileName().toStdString() + "\"}"));
    EXPECT_FALSE(QFile::exists(recording()));
    press(); // Closes the thanks.
    EXPECT_TRUE(eventually([this] { return !windows.has(kWindow); }));
    endProgram();

    startProgram();
    openCanvas();
    EXPECT_FALSE(windows.has(kWindow));
}

TEST_F(Survey, WithoutAVoiceNoteIsOneRowAndAnswersAreKeptWhileTheProgramRuns) {
    setKnowsCanvas(true);
    TrayHost tray(environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));
    startProgram();
    ASSERT_TRUE(eventually([&] { return tray.items().size() == 1; }));
    const auto open = [&] { return tray.click(tray.items().first(), QStringLiteral("Send Feedback…")); };
    ASSERT_TRUE(open());
    answerQuestions();
    ASSERT_TRUE(eventually([this] { return isAccentIn(button()); }));
    keyboard.tap(XK_Tab);
    keyboard.type(u"no");
    chooseInMenu(kSelectAllRow);
    ASSERT_TRUE(eventually([this] { return isAnswerSelected(); }));
    chooseInMenu(kCutRow);
    ASSERT_TRUE(eventually([this] { return !isAnswerSelected(); }));
    pointer.click(windows.frame(kWindow).topRight() + QPoint(-24, 24));
    ASSERT_TRUE(eventually([this] { return !windows.has(kWindow); }));
    ASSERT_TRUE(open());
    ASSERT_TRUE(eventually([this] { return windows.isActive(kWindow); }));
    press();
    ASSERT_TRUE(program().says(u"[FeedbackService] ✅ Feedback submitted"));
    const auto rows = backend.posted(u"/rest/v1/feedback_responses");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.front().body.toStdString(), row(R"("open_text":""})"));
    EXPECT_TRUE(backend.posted(u"/storage").empty());
}

} // namespace tallowby::test
