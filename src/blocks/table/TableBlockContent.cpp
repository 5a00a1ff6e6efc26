#include "blocks/table/TableBlockContent.h"

#include "blocks/text/FieldEditor.h"
#include "blocks/text/TextMeasure.h"
#include "canvas/drawing/PathDrawingItem.h"
#include "platform/theme/Theme.h"

#include <QFontMetricsF>
#include <QPointer>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// Of a column, for its width; those below wrap.
constexpr int kMeasuredRows = 200;
constexpr qsizetype kMeasuredLength = 100;

bool isNumber(const QString &text) {
    static const QRegularExpression kNumber(QStringLiteral(
        R"(^\s*[-+\x{2212}]?\s?[$\x{20ac}\x{a3}\x{a5}]?\s?\d[\d.,'\s]*\s?[%$\x{20ac}\x{a3}\x{a5}]?\s*$)"));
    return text.size() <= kMeasuredLength && kNumber.match(text).hasMatch();
}

} // namespace

TableBlockContent::TableBlockContent(QQuickItem *parent)
    : FieldsBody(parent)
    , m_cells({"words", "cellX", "cellY", "cellWidth", "cellHeight", "isHeader", "isRightAligned", "isEdited"})
    , m_lines(new PathDrawingItem(PathDrawingItem::Keeping::picture, this)) {
    // Above the ground, which is made later.
    m_lines->setZ(1);
}

void TableBlockContent::componentComplete() {
    FieldsBody::componentComplete();
    connect(&Theme::shared(), &Theme::changed, this, &TableBlockContent::drawLines);
    connect(this, &BlockBody::isLegibleChanged, this, &TableBlockContent::drawLines);
}

void TableBlockContent::reload() {
    m_table = TableCells(*block());
    m_columns.clear();
    m_cell = {std::min(m_cell.row, m_table.rowCount() - 1), std::min(m_cell.column, m_table.columnCount() - 1)};
    if (isEditing() && !canOpen(m_cell)) {
        viewModel().endEditing();
    }
}

void TableBlockContent::writeCells() {
    write(QStringLiteral("cells"), m_table.toPayload());
    layOut();
}

void TableBlockContent::writeShape() {
    m_columns.clear();
    write(QStringLiteral("rows"), m_table.rowCount());
    write(QStringLiteral("columns"), m_table.columnCount());
    writeCells();
}

// Layout.

QFont TableBlockContent::cellFont() const {
    QFont font(Theme::shared().uiFamily());
    font.setPixelSize(Theme::shared().bodySize());
    return font;
}

QFont TableBlockContent::headerFont() const {
    QFont font = cellFont();
    font.setWeight(QFont::Medium);
    return font;
}

QString TableBlockContent::shown(int row, int column) const {
    const QString text = m_table.text(row, column);
    return text.size() > kMaxShownCell ? text.left(kMaxShownCell) + u'\u2026' : text;
}

/// Measured when it comes into view first, and again when one of its cells has changed.
const TableBlockContent::Column &TableBlockContent::column(int index) const {
    if (const auto known = m_columns.constFind(index); known != m_columns.cend()) {
        return *known;
    }
    const QFontMetricsF metrics(cellFont());
    const QFontMetricsF headerMetrics(headerFont());
    double widest = 0;
    int numbers = 0;
    int words = 0;
    for (int row = 0; row < std::min(m_table.rowCount(), kMeasuredRows); ++row) {
        const QString text = m_table.text(row, index);
        for (const QString &line : text.left(kMeasuredLength).split(u'\n')) {
            widest = std::max(widest, (row == 0 ? headerMetrics : metrics).horizontalAdvance(line));
        }
        if (row > 0 && !text.isEmpty()) {
            ++(isNumber(text) ? numbers : words);
        }
    }
    const double width = std::ceil(widest) + 2 * kHorizontalPadding + 4;
    return *m_columns.insert(index, {std::clamp(width, kNarrowestColumn, kWidestColumn), numbers > 0 && words == 0});
}

double TableBlockContent::rowHeight(int row) const {
    double height = kSmallestRow;
    const QFont font = row == 0 ? headerFont() : cellFont();
    for (const Span &span : m_shownColumns) {
        const QString text = shown(row, span.index);
        if (!text.isEmpty()) {
            // The editor shows all of a text whose display only begins.
            const double needed = isLongInEditor({row, span.index})
                                      ? editor()->usedSize().height()
                                      : measuredText(text, font, span.length - 2 * kHorizontalPadding).height();
            height = std::max(height, std::ceil(needed) + 2 * kVerticalPadding);
        }
    }
    return height;
}

void TableBlockContent::layOutColumns() {
    // The last page is full.
    double width = 0;
    int lastFirst = m_table.columnCount();
    while (lastFirst > 0 && width + column(lastFirst - 1).width <= kLargest.width()) {
        width += column(--lastFirst).width;
    }
    m_firstColumn = std::clamp(m_firstColumn, 0, lastFirst);
    m_shownColumns.clear();
    double x = 0;
    for (int index = m_firstColumn; index < m_table.columnCount(); ++index) {
        const double length = column(index).width;
        if (x + length > kLargest.width() && !m_shownColumns.empty()) {
            break;
        }
        m_shownColumns.push_back({index, x, length});
        x += length;
    }
}

void TableBlockContent::layOutRows() {
    const double room = kLargest.height() - kExtentHeight;
    const double header = rowHeight(0);
    double height = header;
    int lastFirst = m_table.rowCount();
    while (lastFirst > 1) {
        const double next = rowHeight(lastFirst - 1);
        if (height + next > room && lastFirst < m_table.rowCount()) {
            break;
        }
        height += next;
        --lastFirst;
    }
    m_firstRow = std::clamp(m_firstRow, 1, std::max(1, lastFirst));
    m_shownRows.assign(1, {0, 0, header});
    double y = header;
    for (int row = m_firstRow; row < m_table.rowCount(); ++row) {
        const double length = rowHeight(row);
        if (y + length > room && m_shownRows.size() > 1) {
            break;
        }
        m_shownRows.push_back({row, y, length});
        y += length;
    }
}

void TableBlockContent::layOut() {
    layOutColumns();
    layOutRows();
    showCells();
    Q_EMIT tableChanged();
    refreshEditor();
    const Span &right = m_shownColumns.back();
    const Span &bottom = m_shownRows.back();
    insistOnSize({right.start + right.length, bottom.start + bottom.length + (extent().isEmpty() ? 0 : kExtentHeight)});
}

void TableBlockContent::showCells() {
    std::vector<QVariantList> cells;
    cells.reserve(m_shownRows.size() * m_shownColumns.size());
    for (const Span &row : m_shownRows) {
        for (const Span &span : m_shownColumns) {
            const bool isEdited = isEditing() && m_cell == Cell{row.index, span.index};
            cells.push_back({shown(row.index, span.index), span.start, row.start, span.length, row.length,
                             row.index == 0, column(span.index).isNumeric, isEdited});
        }
    }
    m_cells.assign(std::move(cells));
    drawLines();
}

/// As paths: at a small zoom some lines of a rectangle each would fall between the pixels.
void TableBlockContent::drawLines() {
    QPainterPath lines;
    const double width = m_shownColumns.back().start + m_shownColumns.back().length;
    const double height = m_shownRows.back().start + m_shownRows.back().length;
    for (std::size_t i = 1; i < m_shownRows.size(); ++i) {
        lines.addRect(1, m_shownRows[i].start, width - 2, 1);
    }
    for (std::size_t i = 1; i < m_shownColumns.size(); ++i) {
        lines.addRect(m_shownColumns[i].start, 1, 1, height - 2);
    }
    lines.setFillRule(Qt::WindingFill);
    m_lines->setDrawing(isLegible()
                            ? PathDrawing({{.path = lines, .fill = Theme::shared().surfaceEdge(), .pen = Qt::NoPen}})
                            : PathDrawing());
}

QString TableBlockContent::extent() const {
    const bool isWhole =
        int(m_shownRows.size()) == m_table.rowCount() && int(m_shownColumns.size()) == m_table.columnCount();
    if (isWhole || m_shownRows.empty()) {
        return {};
    }
    return tr("Rows %L1 to %L2 of %L3, columns %L4 to %L5 of %L6")
        .arg(m_firstRow + 1)
        .arg(m_shownRows.back().index + 1)
        .arg(m_table.rowCount())
        .arg(m_firstColumn + 1)
        .arg(m_shownColumns.back().index + 1)
        .arg(m_table.columnCount());
}

QString TableBlockContent::overview() const {
    QStringList rows;
    for (const Span &row : m_shownRows) {
        QStringList cells;
        for (const Span &span : m_shownColumns) {
            cells << shown(row.index, span.index).left(kMeasuredLength);
        }
        rows << cells.join(QStringLiteral("   "));
    }
    return rows.join(u'\n');
}

void TableBlockContent::setZoom(double zoom) {
    FieldsBody::setZoom(zoom);
    m_lines->setZoom(zoom);
    if (isEditing()) {
        Q_EMIT chromeScaleChanged();
    }
}

void TableBlockContent::settleZoom() {
    FieldsBody::settleZoom();
    m_lines->settleZoom();
}

// Rows and columns.

void TableBlockContent::insertRow(int row) {
    leaveField();
    m_table.insertRow(row);
    writeShape();
    edit({row, m_cell.column}, Caret::end);
}

void TableBlockContent::insertColumn(int column) {
    leaveField();
    m_table.insertColumn(column);
    writeShape();
    edit({m_cell.row, column}, Caret::end);
}

void TableBlockContent::addRow() {
    insertRow(m_table.rowCount());
}

void TableBlockContent::addColumn() {
    insertColumn(m_table.columnCount());
}

void TableBlockContent::removeRow() {
    leaveField();
    m_table.removeRow(m_cell.row);
    m_cell.row = std::min(m_cell.row, m_table.rowCount() - 1);
    writeShape();
    editOrEnd();
}

void TableBlockContent::removeColumn() {
    leaveField();
    m_table.removeColumn(m_cell.column);
    m_cell.column = std::min(m_cell.column, m_table.columnCount() - 1);
    writeShape();
    editOrEnd();
}

/// For the cell that was clicked; the menu of the keyboard is for the last one.
std::vector<MenuEntry> TableBlockContent::menuEntries() {
    const QPointF clicked = mapFromItem(parentItem()->parentItem(), viewModel().rightClickCursorPos());
    const Cell cell = cellAt(clicked).value_or(Cell{m_table.rowCount() - 1, m_table.columnCount() - 1});
    // The block may go while the menu is open, and the table may be another.
    const auto change = [this, cell](const std::function<void(TableBlockContent &)> &how) {
        return [item = QPointer(this), cell, how] {
            if (item && cell.row < item->m_table.rowCount() && cell.column < item->m_table.columnCount()) {
                item->leaveField();
                item->m_cell = cell;
                how(*item);
            }
        };
    };
    std::vector<MenuEntry> entries{
        {.text = tr("Add row below"),
         .symbol = QStringLiteral("arrow.down"),
         .startsGroup = true,
         .action = change([row = cell.row + 1](TableBlockContent &table) { table.insertRow(row); })},
        {.text = tr("Add column to the right"),
         .symbol = QStringLiteral("arrow.right"),
         .action = change([column = cell.column + 1](TableBlockContent &table) { table.insertColumn(column); })},
    };
    if (canRemoveRow()) {
        entries.push_back({.text = tr("Remove row"),
                           .symbol = QStringLiteral("minus"),
                           .action = change([](TableBlockContent &table) { table.removeRow(); })});
    }
    if (canRemoveColumn()) {
        entries.push_back({.text = tr("Remove column"),
                           .symbol = QStringLiteral("minus"),
                           .action = change([](TableBlockContent &table) { table.removeColumn(); })});
    }
    return entries;
}

} // namespace tallowby
