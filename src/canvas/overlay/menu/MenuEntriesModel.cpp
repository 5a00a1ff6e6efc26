#include "canvas/overlay/menu/MenuEntriesModel.h"

#include <utility>

namespace tallowby {

MenuEntriesModel::MenuEntriesModel(std::vector<MenuEntry> entries, QObject *parent)
    : QAbstractListModel(parent)
    , m_entries(std::move(entries)) {}

const MenuEntry *MenuEntriesModel::currentEntry() const {
    return m_current < 0 ? nullptr : &m_entries[std::size_t(m_current)];
}

void MenuEntriesModel::setCurrent(int row) {
    const int valid = row < rowCount() ? row : -1;
    if (std::exchange(m_current, valid) != valid) {
        Q_EMIT currentChanged();
    }
}

void MenuEntriesModel::moveCurrent(int rows) {
    const int count = rowCount();
    const int from = m_current < 0 && rows < 0 ? 0 : m_current;
    setCurrent(count > 0 ? ((from + rows) % count + count) % count : -1);
}

void MenuEntriesModel::jumpTo(const QString &start) {
    const int count = rowCount();
    for (int step = 1; step <= count; ++step) {
        const int row = (m_current + step) % count;
        if (m_entries[std::size_t(row)].text.startsWith(start, Qt::CaseInsensitive)) {
            setCurrent(row);
            return;
        }
    }
}

int MenuEntriesModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant MenuEntriesModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const MenuEntry &entry = m_entries[std::size_t(index.row())];
    switch (role) {
    case TextRole:
        return entry.text;
    case SymbolRole:
        return entry.symbol;
    case ShortcutRole:
        return entry.shortcut;
    case StartsGroupRole:
        return entry.startsGroup && index.row() > 0;
    case HasChildrenRole:
        return !entry.children.empty();
    default:
        return {};
    }
}

QHash<int, QByteArray> MenuEntriesModel::roleNames() const {
    return {{TextRole, "text"},
            {SymbolRole, "symbol"},
            {ShortcutRole, "shortcut"},
            {StartsGroupRole, "startsGroup"},
            {HasChildrenRole, "hasChildren"}};
}

} // namespace tallowby
