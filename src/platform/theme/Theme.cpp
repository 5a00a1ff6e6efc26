#include "platform/theme/Theme.h"

#include "platform/theme/SpringCurve.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QStyleHints>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tallowby {

namespace {

struct Paper {
    QLatin1StringView name;
    QColor color;
};

const std::array<Paper, 6> kPapers{{
    {QLatin1StringView("yellow"), QColor(0xFFF3A3)},
    {QLatin1StringView("peach"), QColor(0xFFDCBD)},
    {QLatin1StringView("rose"), QColor(0xFFCDD7)},
    {QLatin1StringView("lilac"), QColor(0xE6D8FF)},
    {QLatin1StringView("sky"), QColor(0xCFE8FF)},
    {QLatin1StringView("mint"), QColor(0xD1F4DA)},
}};
/// How much of a paper's colour is left in the dark.
constexpr float kPaperInTheDark = 0.78F;

QColor mixed(const QColor &over, const QColor &under, float share) {
    const auto channel = [share](float a, float b) { return b + (a - b) * share; };
    return QColor::fromRgbF(channel(over.redF(), under.redF()), channel(over.greenF(), under.greenF()),
                            channel(over.blueF(), under.blueF()));
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(float(opacity));
    return color;
}

/// The first installed family, else that of the given system font.
QString firstInstalled(std::initializer_list<QString> families, QFontDatabase::SystemFont fallback) {
    for (const QString &family : families) {
        if (QFontDatabase::hasFamily(family)) {
            return family;
        }
    }
    return QFontDatabase::systemFont(fallback).family();
}

/// Those that are installed, else the general system font.
QStringList allInstalled(QStringList families) {
    families.removeIf([](const QString &family) { return !QFontDatabase::hasFamily(family); });
    return families.isEmpty() ? QStringList{QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()} : families;
}

bool isDarkNow(Appearance appearance) {
    const QByteArray override = qgetenv("TALLOWBY_THEME");
    if (override == "dark" || override == "light") {
        return override == "dark";
    }
    if (appearance != Appearance::system) {
        return appearance == Appearance::dark;
    }
    const QPalette desktop = QGuiApplication::palette();
    return desktop.color(QPalette::Window).lightness() < desktop.color(QPalette::WindowText).lightness();
}

/// Qt's text fields blink for as long as they hold focus, and repaint their window each time. The theme takes the
/// desktop's interval for the carets that views draw, which come to rest, and switches Qt's own off.
int takeOverCaretBlinking() {
    QStyleHints *hints = QGuiApplication::styleHints();
    const int interval = hints->cursorFlashTime() / 2;
    hints->setCursorFlashTime(0);
    return interval;
}

/// A spring of that response, in seconds, and damping ratio: stiffness (2π / response)², damping 4π · ratio / response.
SpringCurve springCurve(double response, double dampingRatio) {
    const double angularFrequency = 2 * std::numbers::pi / response;
    return {1, angularFrequency * angularFrequency, 2 * dampingRatio * angularFrequency};
}

const SpringCurve &panelSpringCurve() {
    static const SpringCurve curve = springCurve(0.3, 0.8);
    return curve;
}

const SpringCurve &cardSpringCurve() {
    static const SpringCurve curve = springCurve(0.35, 0.85);
    return curve;
}

/// A curve's course over its settling duration. An easing curve takes a plain function, so each spring has its own.
template <const SpringCurve &(*curve)()>
QEasingCurve easing() {
    QEasingCurve easing;
    easing.setCustomType([](qreal progress) {
        const auto time = std::chrono::duration<double>(curve().settlingDuration()) * progress;
        return curve().value(std::chrono::duration_cast<SpringCurve::Duration>(time));
    });
    return easing;
}

int durationOf(const SpringCurve &curve) {
    return int(std::chrono::ceil<std::chrono::milliseconds>(curve.settlingDuration()).count());
}

} // namespace

Theme::Theme()
    : m_isDark(isDarkNow(Appearance::system))
    , m_caretInterval(takeOverCaretBlinking())
    , m_uiFamily(firstInstalled({QStringLiteral("Inter")}, QFontDatabase::GeneralFont))
    , m_codeFamily(
          firstInstalled({QStringLiteral("JetBrains Mono"), QStringLiteral("Hack"), QStringLiteral("DejaVu Sans Mono")},
                         QFontDatabase::FixedFont))
    , m_handFamily(firstInstalled({QStringLiteral("ChalkboardSE-Regular"), QStringLiteral("Chalkboard SE"),
                                   QStringLiteral("Comic Neue"), QStringLiteral("Klee One")},
                                  QFontDatabase::GeneralFont))
    , m_noteFamilies(
          allInstalled({QStringLiteral("MarkerFelt-Thin"), QStringLiteral("Marker Felt"), QStringLiteral("Rufscript"),
                        QStringLiteral("Kalam"), QStringLiteral("Comic Neue")})) {
    QCoreApplication::instance()->installEventFilter(this);
}

Theme &Theme::shared() {
    // Lives as long as the application: fonts and style hints are gone after it.
    static auto *const theme = [] {
        auto *made = new Theme;
        made->setParent(QCoreApplication::instance());
        QJSEngine::setObjectOwnership(made, QJSEngine::CppOwnership);
        return made;
    }();
    return *theme;
}

Theme *Theme::create(QQmlEngine *, QJSEngine *) {
    return &shared();
}

const Theme::Palette &Theme::palette() const {
    static const Palette light{.canvas = QColor(0xF9F8F2),
                               .dot = QColor(0xDAD6C8),
                               .surface = QColor(0xFFFFFF),
                               .surfaceRaised = QColor(0xFFFFFF),
                               .hairline = withOpacity(QColor(0x1F1E1A), 0.10),
                               .ink = QColor(0x1F1E1A),
                               .inkSoft = QColor(0x6B675C),
                               .accent = QColor(0x2F6BEB),
                               .danger = QColor(0xC8372D),
                               .success = QColor(0x34C759),
                               .blue = QColor(0x2F6BEB),
                               .purple = QColor(0x8E4BD6),
                               .orange = QColor(0xE8791D),
                               .yellow = QColor(0xE5B800)};
    static const Palette dark{.canvas = QColor(0x1B1A18),
                              .dot = QColor(0x35332E),
                              .surface = QColor(0x262522),
                              .surfaceRaised = QColor(0x302E2A),
                              .hairline = withOpacity(QColor(0xF1EEE4), 0.12),
                              .ink = QColor(0xF1EEE4),
                              .inkSoft = QColor(0xA8A294),
                              .accent = QColor(0x7DA8FF),
                              .danger = QColor(0xFF7B70),
                              .success = QColor(0x4BD66E),
                              .blue = QColor(0x7DA8FF),
                              .purple = QColor(0xBD93F5),
                              .orange = QColor(0xFFA45C),
                              .yellow = QColor(0xFFD84D)};
    return m_isDark ? dark : light;
}

void Theme::setAppearance(Appearance appearance) {
    m_appearance = appearance;
    followDesktop();
}

QColor Theme::surfaceEdge() const {
    return mixed(hairline(), surface(), hairline().alphaF());
}

QStringList Theme::notePaperNames() {
    QStringList names;
    for (const Paper &paper : kPapers) {
        names << paper.name;
    }
    return names;
}

QColor Theme::notePaper(const QString &name) const {
    const auto paper = std::ranges::find(kPapers, name, &Paper::name);
    const QColor color = paper == kPapers.end() ? kPapers.front().color : paper->color;
    return m_isDark ? mixed(color, surface(), kPaperInTheDark) : color;
}

QColor Theme::hoverWash() const {
    return withOpacity(ink(), 0.06);
}

QColor Theme::pressWash() const {
    return withOpacity(ink(), 0.12);
}

QColor Theme::accentTint() const {
    return withOpacity(accent(), isDark() ? 0.22 : 0.12);
}

QColor Theme::veil() const {
    return withOpacity(Qt::black, isDark() ? 0.44 : 0.24);
}

QEasingCurve Theme::panelSpring() const {
    return easing<panelSpringCurve>();
}

int Theme::panelSpringDuration() const {
    return durationOf(panelSpringCurve());
}

QEasingCurve Theme::cardSpring() const {
    return easing<cardSpringCurve>();
}

int Theme::cardSpringDuration() const {
    return durationOf(cardSpringCurve());
}

/// Answers within 0.5 s with a damping ratio of 1: 1 − e^(−ωt) · (1 + ωt), ω = 2π / response. At its end it is within a
/// thousandth of its goal.
QEasingCurve Theme::searchSpring() const {
    QEasingCurve curve;
    curve.setCustomType([](qreal progress) {
        const double swing = 2 * std::numbers::pi / 0.5 * progress * kSearchSpringDuration / 1000;
        return progress >= 1 ? 1.0 : 1 - std::exp(-swing) * (1 + swing);
    });
    return curve;
}

QColor Theme::textColor(const QString &chosen) const {
    constexpr qsizetype kHexLength = 7;
    const bool hasForm = chosen.size() == kHexLength && chosen.startsWith(u'#');
    const QColor color = hasForm ? QColor::fromString(chosen) : QColor();
    return !color.isValid() || color == QColor(Qt::black) || color == QColor(Qt::white) ? ink() : color;
}

bool Theme::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) {
        followDesktop();
    }
    return QObject::eventFilter(watched, event);
}

void Theme::followDesktop() {
    const bool isDark = isDarkNow(m_appearance);
    if (m_isDark != isDark) {
        m_isDark = isDark;
        Q_EMIT changed();
    }
}

} // namespace tallowby
