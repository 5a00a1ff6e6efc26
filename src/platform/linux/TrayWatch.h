#pragma once

#include "platform/desktop/StatusArea.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <xcb/xcb.h>

namespace tallowby {

class XcbConnection;

/// Waits for a tray: a host of StatusNotifierItems on the session bus, or one that embeds X windows (System Tray
/// Protocol, freedesktop.org). Qt asks once, at the first item of a process, which of the two there is and stays with
/// that answer; an agent that starts at login is often there before the panel.
class TrayWatch final : public StatusArea {
    Q_OBJECT

public:
    explicit TrayWatch(XcbConnection &x11);
    ~TrayWatch() override;

    [[nodiscard]] bool hasAppeared() const override { return m_hasAppeared; }

private:
    void askWatcher();
    void lookForEmbedder();
    void handleEvent(const xcb_generic_event_t &event);
    void announce();

private Q_SLOTS:
    void takeHost();

private:
    XcbConnection &m_x11;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_hasAppeared = false;
};

} // namespace tallowby
