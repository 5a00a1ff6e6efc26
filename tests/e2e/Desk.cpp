#include "e2e/Desk.h"

#include "e2e/Waiting.h"

#include <X11/keysym.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace tallowby::test {

namespace {

/// Below this grey value a pixel is ink, on any paper of the light theme.
constexpr int kInkGrey = 110;
constexpr QRgb kAccent = qRgb(0x2f, 0x6b, 0xeb);

} // namespace

Desk::Desk()
    : session({.screenSize = kScreenSize, .windowManager = true, .messageBus = true})
    , keyboard(session.display())
    , pointer(session.display())
    , other(session.display())
    , m_environment(QProcessEnvironment::systemEnvironment()) {
    m_environment.insert(session.environment());
    m_environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    m_environment.remove(QStringLiteral("QT_QUICK_BACKEND"));
    m_environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    m_environment.insert(QStringLiteral("TALLOWBY_THEME"), QStringLiteral("light"));
}

Desk::~Desk() {
    if (HasFailure() && m_program) {
        GTEST_LOG_(INFO) << "the program said:\n" << qPrintable(m_program->output());
    }
}

void Desk::SetUp() {
    ASSERT_EQ(session.error().toStdString(), "");
    setKnowsCanvas(true);
    pointer.moveTo(kScreenCentre + QPoint(-200, -100));
    ASSERT_TRUE(eventually([this] { return other.hasFocus(); }));
}

void Desk::setKnowsCanvas(bool knows) {
    setKept(QByteArrayLiteral("lastSeenAppVersion=" TALLOWBY_VERSION "\nlastSeenFeedbackSurveyVersion=v1\n") +
            (knows ? "tallowby.hasSeenCanvasTutorial=true\n" : ""));
}

void Desk::setKept(const QByteArray &lines) {
    const QString folder = m_environment.value(QStringLiteral("XDG_CONFIG_HOME")) + QStringLiteral("/Tallowby");
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile stored(folder + QStringLiteral("/Tallowby.conf"));
    ASSERT_TRUE(stored.open(QFile::WriteOnly));
    stored.write("[General]\n" + lines);
}

void Desk::startProgram() {
    m_program = std::make_unique<Program>(m_environment);
    ASSERT_TRUE(m_program->says(u"[AppDelegate] ✅ Tallowby ready! Press ⌥ + Space to flip."))
        << qPrintable(m_program->output());
}

int Desk::command(const QString &option) {
    return Program(m_environment, {option}).exitCode();
}

void Desk::endProgram() {
    m_program->send(SIGTERM);
    EXPECT_EQ(m_program->exitCode(), 0);
    EXPECT_TRUE(m_program->says(u"[AppDelegate] 👋 Tallowby Ghost App terminating"));
}

void Desk::pressHotKey() {
    keyboard.chord(XK_Alt_L, XK_space);
}

void Desk::openCanvas() {
    pressHotKey();
    ASSERT_TRUE(m_program->says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
}

void Desk::closeCanvas() {
    pressHotKey();
    ASSERT_TRUE(m_program->says(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)"));
}

QString Desk::dataFolder() const {
    return m_environment.value(QStringLiteral("XDG_DATA_HOME")) + QStringLiteral("/Tallowby");
}

QJsonArray Desk::notes() const {
    QFile file(dataFolder() + QStringLiteral("/blocks.json"));
    if (!file.open(QFile::ReadOnly)) {
        return {};
    }
    QJsonArray live;
    for (const QJsonValue &record : QJsonDocument::fromJson(file.readAll()).array()) {
        if (!record.toObject().contains(u"deleted_at")) {
            live << record;
        }
    }
    return live;
}

testing::AssertionResult Desk::notesBecome(QStringList texts) const {
    texts.sort();
    QStringList found;
    const bool areSo = eventually([&] {
        found.clear();
        for (const QJsonValue &record : notes()) {
            found << record[u"raw_text"].toString();
        }
        found.sort();
        return found == texts;
    });
    return areSo ? testing::AssertionSuccess()
                 : testing::AssertionFailure()
                       << "the notes say \"" << qPrintable(found.join(QStringLiteral("\", \""))) << '"';
}

QPointF Desk::noteAt(const QString &text) const {
    for (const QJsonValue &record : notes()) {
        if (record[u"raw_text"] == text) {
            return {record[u"x_position"].toDouble(), record[u"y_position"].toDouble()};
        }
    }
    ADD_FAILURE() << "no note says " << qPrintable(text);
    return {};
}

double Desk::inkIn(QRect area) const {
    const QImage image = picture(area).convertToFormat(QImage::Format_Grayscale8);
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        const uchar *line = image.constScanLine(y);
        dark += int(std::count_if(line, line + image.width(), [](uchar grey) { return grey < kInkGrey; }));
    }
    return double(dark) / (area.width() * area.height());
}

bool Desk::isAccentIn(QRect area) const {
    const QImage image = picture(area);
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(line, line + image.width(), [](QRgb pixel) { return (pixel | 0xff000000) == kAccent; })) {
            return true;
        }
    }
    return false;
}

QImage Desk::picture(QRect area) const {
    xcb_connection_t *connection = xcb_connect(session.display().toLocal8Bit().constData(), nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(connection,
                            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, std::int16_t(area.x()),
                                          std::int16_t(area.y()), std::uint16_t(area.width()),
                                          std::uint16_t(area.height()), ~0U),
                            nullptr),
        &std::free);
    QImage image;
    if (reply) {
        image = QImage(xcb_get_image_data(reply.get()), area.width(), area.height(), QImage::Format_RGB32).copy();
    }
    xcb_disconnect(connection);
    return image;
}

} // namespace tallowby::test
