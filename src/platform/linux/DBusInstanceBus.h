#pragma once

#include "platform/desktop/InstanceBus.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>
#include <optional>

namespace tallowby {

/// What the running program offers on the session bus. Every method is without arguments; others are refused.
class InstanceCommands final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tallowby.Tallowby")

public:
    explicit InstanceCommands(std::function<void(InstanceCommand)> handler)
        : m_handler(std::move(handler)) {}

    // The names are those of the bus's custom, not of this code's.
    Q_SCRIPTABLE void Activate() { m_handler(InstanceCommand::activate); }
    Q_SCRIPTABLE void Toggle() { m_handler(InstanceCommand::toggle); }
    Q_SCRIPTABLE void Settings() { m_handler(InstanceCommand::settings); }
    Q_SCRIPTABLE void Quit() { m_handler(InstanceCommand::quit); }

private:
    std::function<void(InstanceCommand)> m_handler;
};

/// The one program of a session is the owner of the bus name `org.tallowby.Tallowby`.
class DBusInstanceBus final : public InstanceBus {
public:
    /// How long the running program may take to answer. What it was sent waits for it, so a busy one still obeys.
    static constexpr std::chrono::milliseconds kAnswerLimit{2000};

    DBusInstanceBus();
    ~DBusInstanceBus() override;

    [[nodiscard]] Claim claim(InstanceCommand command, std::function<void(InstanceCommand)> handler) override;
    [[nodiscard]] bool send(InstanceCommand command) override;

private:
    enum class Answer { taken, refused, nobody };
    [[nodiscard]] Answer deliver(InstanceCommand command);

    QDBusConnection m_bus;
    std::unique_ptr<InstanceCommands> m_commands;
};

} // namespace tallowby
