#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>

#include <cstdint>
#include <vector>

namespace tallowby {

class AppSettings;
class HotkeyListener;
class HotKeyService;

/// Says in words when the hot key cannot be had, and offers others that can: each was taken and given back before it is
/// offered. Main thread only.
class HotkeyAdvisor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Empty while the hot key works.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// As they stand on the keys, for example "Ctrl + Alt + Space".
    Q_PROPERTY(QStringList alternatives READ alternatives NOTIFY changed)
    /// The hot key in the same words.
    Q_PROPERTY(QString combination READ combination NOTIFY changed)
    /// Whether the desktop gives the key, so that there is nothing to record.
    Q_PROPERTY(bool isAssigned READ isAssigned CONSTANT)
    /// Whether it is still asking the user.
    Q_PROPERTY(bool isUndecided READ isUndecided NOTIFY changed)
    /// What keeps a hot key that is registered from working everywhere; empty when nothing does.
    Q_PROPERTY(QString limitation READ limitation CONSTANT)

public:
    static constexpr std::size_t kOffers = 3;

    HotkeyAdvisor(AppSettings &settings, HotKeyService &service, Scheduler &scheduler);

    /// Watches what becomes of the listener's registrations. Nothing is advised without a listener.
    void setListener(HotkeyListener *listener);

    [[nodiscard]] QString problem() const { return m_problem; }
    [[nodiscard]] QStringList alternatives() const;
    [[nodiscard]] QString combination() const;
    [[nodiscard]] bool isAssigned() const;
    [[nodiscard]] bool isUndecided() const;
    [[nodiscard]] QString limitation() const;
    /// What is written on each of the keys that the desktop has given; empty unless it has given some.
    [[nodiscard]] QStringList assignedCaps() const;

    /// Takes the alternative of that place as the hot key.
    Q_INVOKABLE void choose(int index);
    /// Tries the hot key once more if it could not be had: another program may have let go of it. A desktop that gives
    /// the key is not asked without need, since it would ask the user.
    void tryAgain();
    /// Has the desktop that gives the key ask the user once more.
    Q_INVOKABLE void askDesktop();
    /// Shows where the desktop lets the user give other keys.
    Q_INVOKABLE void openKeyAssignment();

Q_SIGNALS:
    void changed();

private:
    struct Combination {
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;

        bool operator==(const Combination &) const = default;
    };

    void refresh();
    [[nodiscard]] std::vector<Combination> candidates() const;
    [[nodiscard]] bool isFree(const Combination &combination) const;

    AppSettings &m_settings;
    HotKeyService &m_service;
    Scheduler &m_scheduler;
    QPointer<HotkeyListener> m_listener;
    ScheduledCall m_pendingRefresh;
    QString m_problem;
    std::vector<Combination> m_alternatives;
};

} // namespace tallowby
