#include "platform/theme/Theme.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QStyleHints>

namespace tallowby {

namespace {

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

bool desktopIsDark() {
    const QByteArray override = qgetenv("TALLOWBY_THEME");
    if (override == "dark" || override == "light") {
        return override == "dark";
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

} // namespace

Theme::Theme()
    : m_isDark(desktopIsDark())
    , m_caretInterval(takeOverCaretBlinking())
    , m_uiFamily(firstInstalled({QStringLiteral("Inter")}, QFontDatabase::GeneralFont))
    , m_codeFamily(
          firstInstalled({QStringLiteral("JetBrains Mono"), QStringLiteral("Hack"), QStringLiteral("DejaVu Sans Mono")},
                         QFontDatabase::FixedFont))
    , m_handFamily(firstInstalled({QStringLiteral("ChalkboardSE-Regular"), QStringLiteral("Chalkboard SE"),
                                   QStringLiteral("Comic Neue"), QStringLiteral("Klee One")},
                                  QFontDatabase::GeneralFont)) {
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
                               .success = QColor(0x34C759)};
    static const Palette dark{.canvas = QColor(0x1B1A18),
                              .dot = QColor(0x35332E),
                              .surface = QColor(0x262522),
                              .surfaceRaised = QColor(0x302E2A),
                              .hairline = withOpacity(QColor(0xF1EEE4), 0.12),
                              .ink = QColor(0xF1EEE4),
                              .inkSoft = QColor(0xA8A294),
                              .accent = QColor(0x7DA8FF),
                              .danger = QColor(0xFF7B70),
                              .success = QColor(0x4BD66E)};
    return m_isDark ? dark : light;
}

QColor Theme::surfaceEdge() const {
    const QColor line = hairline();
    const QColor ground = surface();
    const auto mixed = [&line](float over, float under) { return under + (over - under) * line.alphaF(); };
    return QColor::fromRgbF(mixed(line.redF(), ground.redF()), mixed(line.greenF(), ground.greenF()),
                            mixed(line.blueF(), ground.blueF()));
}

QColor Theme::hoverWash() const {
    return withOpacity(ink(), 0.06);
}

QColor Theme::pressWash() const {
    return withOpacity(ink(), 0.12);
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
    const bool isDark = desktopIsDark();
    if (m_isDark != isDark) {
        m_isDark = isDark;
        Q_EMIT changed();
    }
}

} // namespace tallowby
