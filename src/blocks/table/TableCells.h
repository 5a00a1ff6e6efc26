#pragma once

#include "model/AnyCodable.h"
#include "model/Block.h"

#include <vector>

namespace tallowby {

/// The cells of a table. Rows may have different lengths, and cells may hold what is no text: both are shown as well as
/// can be, and stay as they are until they are edited. There is always at least one cell.
class TableCells {
public:
    TableCells()
        : m_rows(1) {}
    explicit TableCells(const Block &block);

    [[nodiscard]] int rowCount() const { return int(m_rows.size()); }
    [[nodiscard]] int columnCount() const { return m_columnCount; }
    [[nodiscard]] QString text(int row, int column) const;
    void setText(int row, int column, const QString &text);

    void insertRow(int row);
    void insertColumn(int column);
    /// The last one stays.
    void removeRow(int row);
    void removeColumn(int column);
    /// Fills from the cell on and grows as needed.
    void fill(int row, int column, const std::vector<QStringList> &values);

    /// For the payload.
    [[nodiscard]] AnyCodable toPayload() const;
    /// For other programs: one line a row, a tab between cells. Tabs and breaks within a cell become blanks.
    [[nodiscard]] QString toTabSeparated() const;
    /// None when the text has more rows or columns than anybody means for a note.
    [[nodiscard]] static std::vector<QStringList> fromTabSeparated(const QString &text);

private:
    void recount();

    std::vector<AnyCodable::Array> m_rows;
    int m_columnCount = 1;
};

} // namespace tallowby
