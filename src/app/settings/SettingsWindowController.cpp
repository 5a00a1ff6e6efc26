#include "app/settings/SettingsWindowController.h"

#include "platform/ApplicationSupport.h"
#include "platform/desktop/Displays.h"
#include "platform/desktop/MotionPreference.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>
#include <QUrl>

#include <algorithm>

namespace tallowby {

namespace {

/// A display's place is in pixels already, its size in points.
QRectF inPixels(const Display &display) {
    return {display.frame.topLeft(), QSizeF(display.frame.size()) * display.devicePixelRatio};
}

QRectF allTogether(const std::vector<Display> &displays) {
    QRectF all;
    for (const Display &display : displays) {
        all |= inPixels(display);
    }
    return all;
}

QString describe(const Display &display) {
    const QSize size = inPixels(display).size().toSize();
    const QString extent =
        SettingsWindowController::tr("%1 × %2").arg(QString::number(size.width()), QString::number(size.height()));
    return display.connector.isEmpty() || display.connector == display.name
               ? extent
               : SettingsWindowController::tr("%1, %2").arg(display.connector, extent);
}

} // namespace

SettingsWindowController::SettingsWindowController(const WindowServices &window, const SettingsServices &services)
    : WindowController(window, QStringLiteral("SettingsWindow"))
    , m_services(services) {
    connect(&services.settings, &AppSettings::selectedDisplayIDChanged, this,
            &SettingsWindowController::displayChoicesChanged);
    connect(&services.settings, &AppSettings::appearanceChanged, this, &SettingsWindowController::appearanceChanged);
    connect(&services.settings, &AppSettings::reducesMotionChanged, this, &SettingsWindowController::motionChanged);
    for (const auto signal :
         {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved, &QGuiApplication::primaryScreenChanged}) {
        connect(qGuiApp, signal, this, &SettingsWindowController::displayChoicesChanged);
    }
}

QList<DisplayChoice> SettingsWindowController::displayChoices() const {
    const auto selected = m_services.settings.selectedDisplayID();
    QList<DisplayChoice> choices{
        {tr("Main display"), tr("Follows the desktop's own choice"), !selected, false, {}, std::nullopt}};
    const std::vector<Display> displays = m_services.displays.all();
    const auto turned = m_services.settings.resolvedScreen();
    const QPointF origin = allTogether(displays).topLeft();
    for (const Display &display : displays) {
        choices << DisplayChoice{display.name,
                                 describe(display),
                                 selected == display.id,
                                 turned && turned->id == display.id,
                                 inPixels(display).translated(-origin),
                                 display.id};
    }
    if (selected && std::ranges::find(displays, *selected, &Display::id) == displays.end()) {
        choices << DisplayChoice{
            tr("A display that is not connected"), tr("The main display is used meanwhile"), true, false, {}, selected};
    }
    return choices;
}

QSizeF SettingsWindowController::displaysSize() const {
    return allTogether(m_services.displays.all()).size();
}

bool SettingsWindowController::desktopReducesMotion() const {
    return m_services.desktopMotion.prefersReducedMotion();
}

QString SettingsWindowController::dataFolder() const {
    return applicationSupportFolder().value_or(tr("This system names no folder for data."));
}

void SettingsWindowController::chooseDisplay(int index) {
    const QList<DisplayChoice> choices = displayChoices();
    if (index >= 0 && index < choices.size()) {
        m_services.settings.setSelectedDisplayID(choices.at(index).displayID);
    }
}

void SettingsWindowController::chooseAppearance(int appearance) {
    if (appearance >= int(Appearance::system) && appearance <= int(Appearance::dark)) {
        m_services.settings.setAppearance(Appearance(appearance));
    }
}

void SettingsWindowController::setReducesMotion(bool reduces) {
    m_services.settings.setReducesMotion(reduces);
}

void SettingsWindowController::openDataFolder() {
    if (const auto folder = applicationSupportFolder()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(*folder));
    }
}

void SettingsWindowController::showIntroduction() {
    window()->close();
    m_services.showIntroduction();
}

void SettingsWindowController::prepareToShow() {
    m_services.hotkeyAdvisor.tryAgain();
    m_services.startAtLogin.refresh();
    Q_EMIT motionChanged();
}

} // namespace tallowby
