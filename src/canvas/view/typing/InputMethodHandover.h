#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <QString>

class QQuickItem;

namespace tallowby {

/// Ends what an input method is composing, before the text that it belongs to is left or changed. The words go into the
/// text where they stand. The frameworks cannot be asked for this: some send them to whatever has the focus, some do
/// nothing, and some engines send them once more a little later, when the focus is elsewhere.
class InputMethodHandover : public QObject {
public:
    explicit InputMethodHandover(Scheduler &scheduler);

    /// Puts what is composed in `item` into its text. Does nothing when nothing is being composed there, or for null.
    void finish(QQuickItem *item);
    /// Makes the input method give up `preedit`, which belongs nowhere.
    void discard(const QString &preedit);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void stopForgetting();

    Scheduler &m_scheduler;
    /// What an engine may send again.
    QString m_taken;
    bool m_isResetting = false;
    ScheduledCall m_forgetting;
};

} // namespace tallowby
