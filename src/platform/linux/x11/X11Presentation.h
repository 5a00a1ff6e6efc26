#pragma once

#include "platform/desktop/Presentation.h"
#include "platform/linux/x11/WindowManager.h"

#include <QObject>
#include <QPointer>
#include <QWindow>

#include <vector>

namespace tallowby {

class XcbConnection;

/// The panel as window states of the Extended Window Manager Hints: above, sticky, on all desktops, in no task bar or
/// pager; covering docks is the full-screen state.
class X11Presentation final : public QObject, public Presentation {
    Q_OBJECT

public:
    explicit X11Presentation(XcbConnection &x11);

    [[nodiscard]] PresentationOptions presentationOptions() const override { return m_options; }
    void setPresentationOptions(PresentationOptions options) override;
    [[nodiscard]] ActivationPolicy activationPolicy() const override { return m_policy; }
    void setActivationPolicy(ActivationPolicy policy) override { m_policy = policy; }
    void preparePanel(QWindow &window) override;
    [[nodiscard]] bool showUnseen(QWindow &window) override;
    void hideUnseen(QWindow &window) override;
    void activateIgnoringOtherApps(QWindow &window) override;
    /// What the desktop has handed over with a press of the hot key: the panel shows it at its next showing, and may
    /// take the keyboard (Startup Notification Protocol, freedesktop.org).
    void setActivationToken(const QByteArray &token) { m_activationToken = token; }

private:
    [[nodiscard]] bool coversDocks() const;
    [[nodiscard]] std::vector<xcb_atom_t> panelStates();
    void writePanelStates();
    void writeActivationToken();
    void completePanelStates();
    void requestState(xcb_atom_t state, std::uint32_t action) const;
    void handleEvent(const xcb_generic_event_t &event);

    XcbConnection &m_x11;
    WindowManager m_windowManager;
    PresentationOptions m_options = kDefaultPresentation;
    ActivationPolicy m_policy = ActivationPolicy::accessory;
    QPointer<QWindow> m_panel;
    QByteArray m_activationToken;
    xcb_window_t m_panelWindow = XCB_WINDOW_NONE;
    // Takes the input focus as soon as it can be seen.
    xcb_window_t m_awaited = XCB_WINDOW_NONE;
};

} // namespace tallowby
