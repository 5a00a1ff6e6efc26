#pragma once

#include "platform/desktop/MotionPreference.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace tallowby {

class XcbConnection;

/// Less movement where TALLOWBY_REDUCED_MOTION=1 is in the environment, or where the desktop's animations are off: in
/// XSETTINGS (`Gtk/EnableAnimations`, asked each time) or in the settings portal (asked once, without waiting for the
/// answer, and then followed by its signal).
class DesktopMotionPreference final : public QObject, public MotionPreference {
    Q_OBJECT

public:
    explicit DesktopMotionPreference(XcbConnection &x11);
    ~DesktopMotionPreference() override;

    [[nodiscard]] bool prefersReducedMotion() const override;

private:
    void askPortal();
    Q_SLOT void takePortalChange(const QString &nameSpace, const QString &key, const QDBusVariant &value);

    XcbConnection &m_x11;
    QDBusConnection m_bus;
    bool m_portalAllowsAnimations = true;
};

} // namespace tallowby
