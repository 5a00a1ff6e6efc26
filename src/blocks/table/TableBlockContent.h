#pragma once

#include "blocks/ShownRowsModel.h"
#include "blocks/table/TableCells.h"
#include "blocks/text/FieldsBody.h"

#include <QFont>
#include <QHash>

#include <optional>
#include <vector>

namespace tallowby {

class PathDrawingItem;

/// The body of a table: as large as its cells need, up to a bound; larger tables scroll by rows and columns, below the
/// header row. One editor goes from cell to cell.
class TableBlockContent : public tallowby::FieldsBody {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel *cells READ cells CONSTANT)
    Q_PROPERTY(QFont cellFont READ cellFont CONSTANT)
    Q_PROPERTY(QFont headerFont READ headerFont CONSTANT)
    /// The cell that is edited.
    Q_PROPERTY(QRectF editedRect READ editedRect NOTIFY tableChanged)
    Q_PROPERTY(bool canRemoveRow READ canRemoveRow NOTIFY tableChanged)
    Q_PROPERTY(bool canRemoveColumn READ canRemoveColumn NOTIFY tableChanged)
    /// Which part is seen of a table that scrolls; empty when all of it is.
    Q_PROPERTY(QString extent READ extent NOTIFY tableChanged)
    /// The visible part as text, for when it is too small to be read.
    Q_PROPERTY(QString overview READ overview NOTIFY tableChanged)
    Q_PROPERTY(qreal chromeScale READ chromeScale NOTIFY chromeScaleChanged)

public:
    static constexpr double kNarrowestColumn = 88;
    static constexpr double kWidestColumn = 260;
    static constexpr double kSmallestRow = 32;
    static constexpr double kHorizontalPadding = 10;
    static constexpr double kVerticalPadding = 7;
    static constexpr double kExtentHeight = 24;
    static constexpr QSizeF kLargest{960, 560};
    /// In characters. A longer text shows its beginning while it is not edited.
    static constexpr qsizetype kMaxShownCell = 2'000;
    /// A longer text is not opened: laying it out takes seconds.
    static constexpr qsizetype kMaxOpenedCell = 20'000;

    explicit TableBlockContent(QQuickItem *parent = nullptr);

    [[nodiscard]] QAbstractItemModel *cells() { return &m_cells; }
    [[nodiscard]] QFont cellFont() const;
    [[nodiscard]] QFont headerFont() const;
    [[nodiscard]] QRectF editedRect() const;
    [[nodiscard]] bool canRemoveRow() const { return m_table.rowCount() > 1; }
    [[nodiscard]] bool canRemoveColumn() const { return m_table.columnCount() > 1; }
    [[nodiscard]] QString extent() const;
    [[nodiscard]] QString overview() const;
    [[nodiscard]] double chromeScale() const { return 1 / zoom(); }

    Q_INVOKABLE void addRow();
    Q_INVOKABLE void addColumn();
    /// Those of the cell that is edited.
    Q_INVOKABLE void removeRow();
    Q_INVOKABLE void removeColumn();

    void setIsEditing(bool isEditing) override;
    void placeCaret(QPointF point) override;
    void setZoom(double zoom) override;
    void settleZoom() override;
    [[nodiscard]] std::vector<MenuEntry> menuEntries() override;

Q_SIGNALS:
    void tableChanged();
    void chromeScaleChanged();

protected:
    void componentComplete() override;
    void reload() override;
    void layOut() override;
    [[nodiscard]] bool handleKey(const QKeyEvent &event) override;
    [[nodiscard]] bool isScrolling() const override { return !extent().isEmpty(); }
    void dressEditor(AutoExpandingTextEditor &editor) override;
    [[nodiscard]] QString editedText() const override;
    void takeText(const QString &text) override;
    void editorOpened(AutoExpandingTextEditor &editor) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Cell {
        int row = 0;
        int column = 0;
        bool operator==(const Cell &) const = default;
    };
    /// A row or column in view.
    struct Span {
        int index;
        double start;
        double length;
    };
    struct Column {
        double width;
        bool isNumeric;
    };
    enum class Caret { start, end, all };

    [[nodiscard]] QString shown(int row, int column) const;
    [[nodiscard]] const Column &column(int index) const;
    [[nodiscard]] double rowHeight(int row) const;
    /// True when the cell is short enough to open. A cell that is already open takes text of any length.
    [[nodiscard]] bool canOpen(Cell cell) const;
    /// The next cell that can be opened, from the place in reading order on; none at the end.
    [[nodiscard]] std::optional<Cell> openableFrom(int place, int step) const;
    [[nodiscard]] int placeOf(Cell cell) const { return cell.row * m_table.columnCount() + cell.column; }
    [[nodiscard]] Cell cellOf(int place) const {
        return {place / m_table.columnCount(), place % m_table.columnCount()};
    }
    [[nodiscard]] bool isLongInEditor(Cell cell) const;
    [[nodiscard]] bool walkByLine(int step);
    [[nodiscard]] bool walkByCharacter(int step);
    void walk(int step);
    [[nodiscard]] bool paste();
    void edit(Cell cell, Caret caret);
    void editOrEnd();
    void scrollTo(int row, int column);
    [[nodiscard]] std::optional<Cell> cellAt(QPointF point) const;
    void insertRow(int row);
    void insertColumn(int column);
    void writeCells();
    void writeShape();
    void layOutColumns();
    void layOutRows();
    void showCells();
    void drawLines();

    TableCells m_table;
    Cell m_cell;
    /// The first row below the header, and the first column, in view.
    int m_firstRow = 1;
    int m_firstColumn = 0;
    std::vector<Span> m_shownRows;
    std::vector<Span> m_shownColumns;
    mutable QHash<int, Column> m_columns;
    ShownRowsModel m_cells;
    /// Between the cells; owned as a child.
    PathDrawingItem *m_lines;
};

} // namespace tallowby
