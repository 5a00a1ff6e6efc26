#pragma once

#include <QObject>
#include <QQmlEngine>

namespace tallowby {

class LaunchAtLoginManager;

/// The switch for starting at login, as windows show it: what holds now, in words, and what kept the last change from
/// being made. Main thread only.
class StartAtLogin : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool isOn READ isOn NOTIFY changed)
    /// False where nothing can be switched.
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    /// Empty when the last change was made.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)

public:
    explicit StartAtLogin(LaunchAtLoginManager &manager);

    [[nodiscard]] bool isOn() const;
    [[nodiscard]] bool isAvailable() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QString problem() const { return m_problem; }

    Q_INVOKABLE void setOn(bool isOn);
    /// The desktop's own settings may have changed it.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    LaunchAtLoginManager &m_manager;
    QString m_problem;
};

} // namespace tallowby
