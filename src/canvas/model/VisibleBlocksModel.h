#pragma once

#include "model/Block.h"

#include <QAbstractListModel>
#include <QQmlEngine>

#include <unordered_set>
#include <vector>

namespace tallowby {

/// The blocks that the viewport shows, in paint order, as rows with one role, "block". Each change touches exactly the
/// rows that it is about, so that a view keeps the delegates of all others.
class VisibleBlocksModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The canvas model holds it")

public:
    enum Role { BlockRole = Qt::UserRole };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] const std::vector<BlockPtr> &blocks() const { return m_blocks; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void append(const BlockPtr &block);
    /// These leave out blocks that have no row.
    void removeAll(const std::unordered_set<const Block *> &blocks);
    void moveToEnd(const Block &block);
    void moveToStart(const Block &block);
    /// Removes, inserts and moves the rows that differ from `blocks`.
    void assign(const std::vector<BlockPtr> &blocks);

Q_SIGNALS:
    /// After all that one of these has done to the rows; none when it has done nothing.
    void changed();

private:
    [[nodiscard]] int rowOf(const Block &block) const;
    /// In as few runs as there are. Whether there were any.
    template <typename Predicate>
    bool removeRows(Predicate isGone);
    void moveRow(int from, int to);

    std::vector<BlockPtr> m_blocks;
};

} // namespace tallowby
