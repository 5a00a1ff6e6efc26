#include "blocks/ShownRowsModel.h"

#include <algorithm>
#include <utility>

namespace tallowby {

ShownRowsModel::ShownRowsModel(QList<QByteArray> names, QObject *parent)
    : QAbstractListModel(parent)
    , m_names(std::move(names)) {}

void ShownRowsModel::assign(std::vector<QVariantList> rows) {
    const std::size_t kept = std::min(rows.size(), m_rows.size());
    for (std::size_t i = 0; i < kept; ++i) {
        if (m_rows[i] != rows[i]) {
            m_rows[i] = std::move(rows[i]);
            const QModelIndex changed = index(int(i));
            Q_EMIT dataChanged(changed, changed);
        }
    }
    if (rows.size() < m_rows.size()) {
        beginRemoveRows({}, int(kept), int(m_rows.size()) - 1);
        m_rows.resize(kept);
        endRemoveRows();
    } else if (rows.size() > m_rows.size()) {
        beginInsertRows({}, int(kept), int(rows.size()) - 1);
        std::move(rows.begin() + std::ptrdiff_t(kept), rows.end(), std::back_inserter(m_rows));
        endInsertRows();
    }
}

int ShownRowsModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ShownRowsModel::data(const QModelIndex &index, int role) const {
    const int place = role - Qt::UserRole;
    const bool isKnown = checkIndex(index, CheckIndexOption::IndexIsValid) && place >= 0 && place < m_names.size();
    return isKnown ? m_rows[std::size_t(index.row())].value(place) : QVariant();
}

QHash<int, QByteArray> ShownRowsModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int i = 0; i < m_names.size(); ++i) {
        names.insert(Qt::UserRole + i, m_names[i]);
    }
    return names;
}

} // namespace tallowby
