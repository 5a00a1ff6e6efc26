#pragma once

#include "app/sync/SyncStatus.h"
#include "platform/AppSettings.h"

#include <QObject>
#include <QQmlEngine>

#include <cstdint>
#include <memory>
#include <optional>

class QQuickWindow;

namespace tallowby {

class Displays;

/// One line of the choice of a display.
struct DisplayChoice {
    Q_GADGET
    QML_VALUE_TYPE(displayChoice)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(bool isChosen MEMBER isChosen)

public:
    QString name;
    /// Size and place, or why the display is not there.
    QString detail;
    bool isChosen = false;
    /// None for "whichever is the main one".
    std::optional<std::uint32_t> displayID;
};

/// The window in which the user changes the hot key and the display, made at its first opening and kept. Main thread.
class SettingsWindowController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(tallowby::AppSettings *settings READ settings CONSTANT)
    Q_PROPERTY(QList<tallowby::DisplayChoice> displayChoices READ displayChoices NOTIFY displayChoicesChanged)
    Q_PROPERTY(QString dataFolder READ dataFolder CONSTANT)
    Q_PROPERTY(tallowby::SyncStatus *syncStatus READ syncStatus CONSTANT)

public:
    SettingsWindowController(QQmlEngine &engine, AppSettings &settings, const Displays &displays,
                             SyncStatus &syncStatus);
    ~SettingsWindowController() override;

    [[nodiscard]] AppSettings *settings() const { return &m_settings; }
    [[nodiscard]] QList<DisplayChoice> displayChoices() const;
    [[nodiscard]] QString dataFolder() const;
    [[nodiscard]] SyncStatus *syncStatus() const { return &m_syncStatus; }

    /// Takes the choice at that place of `displayChoices`.
    Q_INVOKABLE void chooseDisplay(int index);
    Q_INVOKABLE void openDataFolder();

    /// Opens the window, or brings it to the front.
    void show();

Q_SIGNALS:
    void displayChoicesChanged();

private:
    QQmlEngine &m_engine;
    AppSettings &m_settings;
    const Displays &m_displays;
    SyncStatus &m_syncStatus;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace tallowby
