#pragma once

#include <QAbstractListModel>
#include <QVariantList>
#include <qqmlintegration.h>

#include <vector>

namespace tallowby {

/// What a body shows of a list that may be far longer: one entry for each delegate on screen. Another part of the list
/// relabels the delegates that there are, so that scrolling makes none.
class ShownRowsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// The names under which a delegate finds the values of its entry, in this order.
    explicit ShownRowsModel(QList<QByteArray> names, QObject *parent = nullptr);

    void assign(std::vector<QVariantList> rows);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<QByteArray> m_names;
    std::vector<QVariantList> m_rows;
};

} // namespace tallowby
