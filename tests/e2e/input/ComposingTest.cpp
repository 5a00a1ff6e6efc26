#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "e2e/input/InputMethodSession.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <csignal>

namespace tallowby::test {

namespace {

const QString kFirst = QStringLiteral("안");
const QString kWord = QStringLiteral("안녕하세요");
/// The keys of these on the two-set layout. The last syllable is always still being composed.
constexpr QStringView kFirstKeys = u"dks";
constexpr QStringView kTwoKeys = u"dkssud";
constexpr QStringView kWordKeys = u"dkssudgktpdy";

/// A note, a list and a table, far from the middle of the screen.
constexpr char kBlocks[] = R"([
{"id":"00000000-0000-4000-8000-000000000001","user_id":"00000000-0000-4000-8000-00000000000a","x_position":-500,
 "y_position":-200,"width":100,"height":24,"z_index":1,"block_type":"text","raw_text":"anchor",
 "created_at":800000000,"updated_at":800000000},
{"id":"00000000-0000-4000-8000-000000000002","user_id":"00000000-0000-4000-8000-00000000000a","x_position":-500,
 "y_position":-100,"width":300,"height":126,"z_index":2,"block_type":"checklist",
 "content":{"title":"","items":[{"id":"1","text":"Milk","isDone":false},{"id":"2","text":"Bread","isDone":false}]},
 "created_at":800000000,"updated_at":800000000},
{"id":"00000000-0000-4000-8000-000000000003","user_id":"00000000-0000-4000-8000-00000000000a","x_position":-500,
 "y_position":150,"width":176,"height":64,"z_index":3,"block_type":"table",
 "content":{"rows":2,"columns":2,"cells":[["Name","Age"],["Ada","36"]]},
 "created_at":800000000,"updated_at":800000000}
])";
constexpr int kLeftEdge = -500;
/// The first letters of the texts.
constexpr QPoint kAnchor(-494, -188);
constexpr QPoint kMilk(-455, -50);
constexpr QPoint kBread(-455, -22);
constexpr QPoint kAddItem(-450, 10);
constexpr QPoint kAda(-488, 198);
constexpr QPoint kThirtySix(-349, 198);
constexpr QPoint kPaper(400, 200);

/// A person who writes Korean.
class Composing : public Desk, public testing::WithParamInterface<InputMethodSession::Framework> {
protected:
    Composing()
        : inputMethod(GetParam(), environment()) {}

    void SetUp() override {
        Desk::SetUp();
        ASSERT_EQ(inputMethod.error().toStdString(), "");
    }

    void open() {
        startProgram();
        openCanvas();
        ASSERT_TRUE(inputMethod.hasFocus());
    }
    void addBlocks() {
        ASSERT_TRUE(QDir().mkpath(dataFolder()));
        QFile file(dataFolder() + QStringLiteral("/blocks.json"));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(kBlocks);
    }
    /// Points in canvas coordinates from the middle of the screen.
    void click(QPoint place) { pointer.click(kScreenCentre + place); }
    /// The last syllable is composed still. Once the file has what was committed before, the keys have arrived.
    void typeAt(QPoint place, QStringView keys) {
        pointer.moveTo(kScreenCentre + place);
        keyboard.type(keys);
    }
    /// Waits for the caret.
    void openNote(QPoint place) {
        click(place);
        ASSERT_TRUE(eventually([&] { return isAccentIn(around(place)); }));
    }
    /// The first click selects the block, which shows on its left edge.
    void openField(QPoint place) {
        click(place);
        ASSERT_TRUE(eventually([&] { return isAccentIn(around({kLeftEdge, place.y()})); }));
        openNote(place);
    }
    /// Fcitx gives keys back that it does not want, after the letters that were typed at once behind them.
    void moveCaretToEnd(QPoint place) {
        keyboard.tap(XK_End);
        const QRect behind(kScreenCentre + place + QPoint(12, -5), QSize(60, 10));
        EXPECT_TRUE(eventually([&] { return isAccentIn(behind); }));
    }
    [[nodiscard]] static QRect around(QPoint place) { return {kScreenCentre + place - QPoint(30, 15), QSize(60, 30)}; }
    [[nodiscard]] QString content(QStringView kind) const {
        for (const QJsonValue &note : notes()) {
            if (note[u"block_type"].toString() == kind) {
                return QString::fromUtf8(QJsonDocument(note[u"content"].toObject()).toJson(QJsonDocument::Compact));
            }
        }
        return {};
    }
    [[nodiscard]] testing::AssertionResult contentHas(QStringView kind, const QStringList &texts) const {
        const bool isSo = eventually([&] {
            const QString whole = content(kind);
            return std::ranges::all_of(texts,
                                       [&whole](const QString &text) { return whole.contains(u'"' + text + u'"'); });
        });
        return isSo ? testing::AssertionSuccess()
                    : testing::AssertionFailure() << "the file has " << qPrintable(content(kind));
    }

    InputMethodSession inputMethod;
};

TEST_P(Composing, AWordComesOutWholeAtAnySpeed) {
    open();
    QStringList words;
    for (const bool isHasty : {true, false, true, false}) {
        pointer.moveTo(kScreenCentre + QPoint(-300, -250 + 100 * int(words.size())));
        words << kWord;
        if (isHasty) {
            keyboard.type(kWordKeys);
        } else {
            const QRect line(kScreenCentre + QPoint(-400, -280 + 100 * int(words.size() - 1)), QSize(300, 60));
            for (const QChar key : kWordKeys) {
                const QImage before = picture(line);
                keyboard.type(QString(key));
                ASSERT_TRUE(eventually([&] { return picture(line) != before; }));
            }
        }
        keyboard.tap(XK_Escape);
        ASSERT_TRUE(notesBecome(words));
    }
}

TEST_P(Composing, AClickAnywhereLeavesTheWordInItsNote) {
    addBlocks();
    open();
    QStringList texts{QStringLiteral("anchor"), {}, {}};
    int line = 0;
    const auto composeNewNote = [&] {
        typeAt({0, -250 + 100 * line++}, kFirstKeys);
        ASSERT_TRUE(notesBecome(texts + QStringList{QString()})) << "the note that is being composed";
        texts << kFirst;
    };
    composeNewNote();
    click(kPaper);
    ASSERT_TRUE(notesBecome(texts));
    composeNewNote();
    pointer.rightClick(kScreenCentre + kPaper);
    ASSERT_TRUE(notesBecome(texts));
    keyboard.tap(XK_Escape);
    composeNewNote();
    openNote(kAnchor);
    moveCaretToEnd(kAnchor);
    keyboard.type(kTwoKeys);
    texts[0] = QStringLiteral("anchor") + kFirst;
    ASSERT_TRUE(notesBecome(texts));
    click(kAnchor);
    texts[0] += QStringLiteral("녕");
    ASSERT_TRUE(notesBecome(texts));
    click(kPaper);
    ASSERT_TRUE(eventually([&] { return !isAccentIn(around(kAnchor)); }));
    composeNewNote();
    program().send(SIGTERM);
    EXPECT_EQ(program().exitCode(), 0);
    EXPECT_TRUE(notesBecome(texts));
}

TEST_P(Composing, AClickOnAnotherFieldLeavesTheWordInItsOwn) {
    addBlocks();
    open();
    openField(kBread);
    moveCaretToEnd(kBread);
    keyboard.type(kTwoKeys);
    ASSERT_TRUE(contentHas(u"checklist", {QStringLiteral("Milk"), QStringLiteral("Bread안")}));
    // Keys may overtake a click: a person sees first what it did.
    click(kMilk);
    ASSERT_TRUE(contentHas(u"checklist", {QStringLiteral("Milk"), QStringLiteral("Bread안녕")}));
    moveCaretToEnd(kMilk);
    keyboard.type(kTwoKeys);
    ASSERT_TRUE(contentHas(u"checklist", {QStringLiteral("Milk안"), QStringLiteral("Bread안녕")}));
    click(kAddItem);
    ASSERT_TRUE(contentHas(u"checklist", {QStringLiteral("Milk안녕"), QStringLiteral("Bread안녕"), QString()}));
    keyboard.type(kTwoKeys);
    ASSERT_TRUE(contentHas(u"checklist", {QStringLiteral("Milk안녕"), QStringLiteral("Bread안녕"), kFirst}));
    click(kPaper);
    ASSERT_TRUE(
        contentHas(u"checklist", {QStringLiteral("Milk안녕"), QStringLiteral("Bread안녕"), QStringLiteral("안녕")}));

    openField(kAda);
    moveCaretToEnd(kAda);
    keyboard.type(kTwoKeys);
    ASSERT_TRUE(contentHas(u"table", {QStringLiteral("Ada안"), QStringLiteral("36")}));
    click(kThirtySix);
    ASSERT_TRUE(contentHas(u"table", {QStringLiteral("Ada안녕"), QStringLiteral("36")}));
    moveCaretToEnd(kThirtySix);
    keyboard.type(kTwoKeys);
    ASSERT_TRUE(contentHas(u"table", {QStringLiteral("Ada안녕"), QStringLiteral("36안")}));
    click(kPaper);
    EXPECT_TRUE(contentHas(u"table", {QStringLiteral("Ada안녕"), QStringLiteral("36안녕")}));
    EXPECT_EQ(notes().size(), 3) << "nothing else was made";
}

INSTANTIATE_TEST_SUITE_P(OfBothFrameworks, Composing,
                         testing::Values(InputMethodSession::Framework::ibus, InputMethodSession::Framework::fcitx),
                         [](const auto &framework) {
                             return framework.param == InputMethodSession::Framework::ibus ? "IBus" : "Fcitx";
                         });

} // namespace

} // namespace tallowby::test
