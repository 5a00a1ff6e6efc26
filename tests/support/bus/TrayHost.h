#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

namespace tallowby::test {

/// A row of a menu, as its owner tells of it on the bus.
struct TrayMenuRow {
    int id = 0;
    /// Empty for a separator.
    QString label;
    QString shortcut;
    bool isSeparator = false;
};

/// The tray of a desktop: StatusNotifierWatcher and host in one, on a bus of the test's own. It reads the menus of
/// items and clicks their rows as a panel does (com.canonical.dbusmenu). Calls come in while events are processed,
/// which `items` does.
class TrayHost : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registered SCRIPTABLE true)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHost SCRIPTABLE true)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion SCRIPTABLE true)

public:
    /// Takes its place on the bus at `address`.
    explicit TrayHost(const QString &address);
    /// Leaves the bus, as a panel that crashes.
    ~TrayHost() override;

    /// The bus names of the items that have come so far.
    [[nodiscard]] QStringList items();
    /// A property of an item.
    [[nodiscard]] QVariant itemProperty(const QString &item, const QString &name);
    [[nodiscard]] std::vector<TrayMenuRow> menu(const QString &item);
    /// Clicks the row with that label; false when there is none.
    [[nodiscard]] bool click(const QString &item, const QString &label);
    /// Clicks the item itself.
    void activate(const QString &item);

    [[nodiscard]] QStringList registered() const { return m_items; }
    [[nodiscard]] bool isHost() const { return true; }
    [[nodiscard]] int protocolVersion() const { return 0; }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &service);
    Q_SCRIPTABLE void RegisterStatusNotifierHost(const QString &) {}

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString &service);
    Q_SCRIPTABLE void StatusNotifierItemUnregistered(const QString &service);
    Q_SCRIPTABLE void StatusNotifierHostRegistered();

private:
    [[nodiscard]] QString menuPath(const QString &item);

    QDBusConnection m_bus;
    QStringList m_items;
};

} // namespace tallowby::test
