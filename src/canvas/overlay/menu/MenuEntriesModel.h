#pragma once

#include <QAbstractListModel>
#include <QQmlEngine>

#include <functional>
#include <vector>

namespace tallowby {

/// A row of a menu. One with children opens them and has no action.
struct MenuEntry {
    QString text;
    QString symbol;
    /// The key that does the same, as it is written.
    QString shortcut = {};
    /// Whether a hairline parts it from the row above.
    bool startsGroup = false;
    std::function<void()> action = {};
    std::vector<MenuEntry> children = {};
};

/// The rows of one menu and which of them is current, that is under the pointer or reached with the keyboard.
class MenuEntriesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The menu holds it")
    /// -1 for none.
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)

public:
    enum Role { TextRole = Qt::UserRole, SymbolRole, ShortcutRole, StartsGroupRole, HasChildrenRole };

    MenuEntriesModel(std::vector<MenuEntry> entries, QObject *parent);

    [[nodiscard]] const std::vector<MenuEntry> &entries() const { return m_entries; }
    /// Null for none.
    [[nodiscard]] const MenuEntry *currentEntry() const;
    [[nodiscard]] int current() const { return m_current; }
    void setCurrent(int row);
    /// Walks by so many rows and around the ends.
    void moveCurrent(int rows);
    /// To the next row whose text starts so, the case aside; nowhere when there is none.
    void jumpTo(const QString &start);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void currentChanged();

private:
    std::vector<MenuEntry> m_entries;
    int m_current = -1;
};

} // namespace tallowby
