#include "app/settings/SettingsWindowController.h"

#include "platform/ApplicationSupport.h"
#include "platform/Log.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickWindow>
#include <QUrl>

#include <algorithm>

namespace tallowby {

SettingsWindowController::SettingsWindowController(QQmlEngine &engine, AppSettings &settings, const Displays &displays,
                                                   SyncStatus &syncStatus)
    : m_engine(engine)
    , m_settings(settings)
    , m_displays(displays)
    , m_syncStatus(syncStatus) {
    connect(&settings, &AppSettings::selectedDisplayIDChanged, this, &SettingsWindowController::displayChoicesChanged);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &SettingsWindowController::displayChoicesChanged);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &SettingsWindowController::displayChoicesChanged);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &SettingsWindowController::displayChoicesChanged);
}

SettingsWindowController::~SettingsWindowController() = default;

QList<DisplayChoice> SettingsWindowController::displayChoices() const {
    const auto selected = m_settings.selectedDisplayID();
    QList<DisplayChoice> choices{{tr("Main display"), tr("Follows the desktop's own choice"), !selected, std::nullopt}};
    const std::vector<Display> displays = m_displays.all();
    for (const Display &display : displays) {
        choices << DisplayChoice{display.name, tr("%1 × %2").arg(display.frame.width()).arg(display.frame.height()),
                                 selected == display.id, display.id};
    }
    if (selected && std::ranges::find(displays, *selected, &Display::id) == displays.end()) {
        choices << DisplayChoice{tr("A display that is not connected"), tr("The main display is used meanwhile"), true,
                                 selected};
    }
    return choices;
}

QString SettingsWindowController::dataFolder() const {
    return applicationSupportFolder().value_or(tr("This system names no folder for data."));
}

void SettingsWindowController::chooseDisplay(int index) {
    const QList<DisplayChoice> choices = displayChoices();
    if (index >= 0 && index < choices.size()) {
        m_settings.setSelectedDisplayID(choices.at(index).displayID);
    }
}

void SettingsWindowController::openDataFolder() {
    if (const auto folder = applicationSupportFolder()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(*folder));
    }
}

void SettingsWindowController::show() {
    if (!m_window) {
        QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/App/SettingsWindow.qml")));
        m_window.reset(qobject_cast<QQuickWindow *>(
            component.createWithInitialProperties({{QStringLiteral("controller"), QVariant::fromValue(this)}})));
        if (!m_window) {
            logLine(QString(u"[SettingsWindow] ❌ Not opened: " + component.errorString()));
            return;
        }
    }
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

} // namespace tallowby
