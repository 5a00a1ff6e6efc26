#pragma once

#include "platform/Scheduler.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <qqmlintegration.h>

namespace tallowby {

class SyncEngine;

/// How it stands with the backend, in words, for the dot on the canvas and the section in the settings. There from the
/// start; the engine comes with the first turn.
class SyncStatus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(Tone tone READ tone NOTIFY changed)
    /// Of the dot.
    Q_PROPERTY(QColor color READ color NOTIFY changed)
    /// One line.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    /// What else there is to know: why not, what waits, when it last went well. Empty when nothing.
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    /// Opens the user's notes to whoever has it. Empty while there is none.
    Q_PROPERTY(QString userId READ userId NOTIFY changed)

public:
    enum class Tone { Quiet, Busy, Good, Bad };
    Q_ENUM(Tone)

    explicit SyncStatus(Scheduler &scheduler);

    void setEngine(SyncEngine *engine);

    [[nodiscard]] Tone tone() const;
    [[nodiscard]] QColor color() const;
    [[nodiscard]] QString summary() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QString userId() const;

    Q_INVOKABLE void copyUserId() const;

Q_SIGNALS:
    void changed();

private:
    Scheduler &m_scheduler;
    QPointer<SyncEngine> m_engine;
};

} // namespace tallowby
