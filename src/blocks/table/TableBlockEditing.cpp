#include "blocks/table/TableBlockContent.h"

#include "blocks/text/FieldEditor.h"
#include "platform/theme/Theme.h"

#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace tallowby {

namespace {

constexpr int kRowsPerNotch = 3;

} // namespace

bool TableBlockContent::canOpen(Cell cell) const {
    return m_table.text(cell.row, cell.column).size() <= kMaxOpenedCell;
}

bool TableBlockContent::isLongInEditor(Cell cell) const {
    return editor() && cell == m_cell && m_table.text(cell.row, cell.column).size() > kMaxShownCell;
}

std::optional<TableBlockContent::Cell> TableBlockContent::openableFrom(int place, int step) const {
    for (; place >= 0 && place < m_table.rowCount() * m_table.columnCount(); place += step) {
        if (canOpen(cellOf(place))) {
            return cellOf(place);
        }
    }
    return std::nullopt;
}

void TableBlockContent::setIsEditing(bool isEditing) {
    if (isEditing && !this->isEditing() && !canOpen(m_cell)) {
        const std::optional<Cell> other = openableFrom(0, 1);
        if (!other) {
            // An editor of nothing would swallow what is typed.
            viewModel().endEditing();
            return;
        }
        m_cell = *other;
    }
    FieldsBody::setIsEditing(isEditing);
    if (isEditing) {
        setCursor(QCursor(Qt::IBeamCursor));
        scrollTo(m_cell.row, m_cell.column);
    } else {
        unsetCursor();
    }
    layOut();
}

QRectF TableBlockContent::editedRect() const {
    const auto row = std::ranges::find(m_shownRows, m_cell.row, &Span::index);
    const auto span = std::ranges::find(m_shownColumns, m_cell.column, &Span::index);
    if (row == m_shownRows.end() || span == m_shownColumns.end()) {
        return {};
    }
    return {span->start, row->start, span->length, row->length};
}

void TableBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    const QRectF rect = editedRect();
    editor.setVisible(!rect.isEmpty());
    editor.setPosition(rect.topLeft() + QPointF(kHorizontalPadding, kVerticalPadding));
    editor.setSize(
        {std::max(0.0, rect.width() - 2 * kHorizontalPadding), std::max(0.0, rect.height() - 2 * kVerticalPadding)});
    editor.setFont(m_cell.row == 0 ? headerFont() : cellFont());
    editor.setTextColor(Theme::shared().ink());
    auto &cellEditor = static_cast<FieldEditor &>(editor);
    cellEditor.setIsRightAligned(column(m_cell.column).isNumeric);
    cellEditor.setFieldName(tr("Row %L1, column %L2").arg(m_cell.row + 1).arg(m_cell.column + 1));
}

QString TableBlockContent::editedText() const {
    return m_table.text(m_cell.row, m_cell.column);
}

void TableBlockContent::editorOpened(AutoExpandingTextEditor &editor) {
    FieldsBody::editorOpened(editor);
    connect(&editor, &AutoExpandingTextEditor::usedSizeChanged, this, [this] {
        if (isLongInEditor(m_cell)) {
            layOut();
        }
    });
}

void TableBlockContent::takeText(const QString &text) {
    if (text != editedText()) {
        m_table.setText(m_cell.row, m_cell.column, text);
        m_columns.remove(m_cell.column);
        writeCells();
    }
}

void TableBlockContent::edit(Cell cell, Caret caret) {
    if (!editor() || !canOpen(cell)) {
        return;
    }
    if (cell != m_cell) {
        leaveField();
    }
    const auto leave = [this, cell] {
        m_cell = cell;
        scrollTo(cell.row, cell.column);
    };
    moveEditor(leave, caret == Caret::start ? 0 : -1);
    if (caret == Caret::all) {
        editor()->selectAll();
    }
}

/// Where the cell that is edited has gone, and another one stands in its place.
void TableBlockContent::editOrEnd() {
    if (isEditing() && !canOpen(m_cell)) {
        viewModel().endEditing();
    } else {
        edit(m_cell, Caret::end);
    }
}

/// By as little as brings the cell into view.
void TableBlockContent::scrollTo(int row, int column) {
    m_firstRow = row > 0 ? std::min(m_firstRow, row) : m_firstRow;
    m_firstColumn = std::min(m_firstColumn, column);
    layOut();
    while (row > m_shownRows.back().index && m_firstRow < row) {
        m_firstRow += std::max(1, row - m_shownRows.back().index);
        layOut();
    }
    while (column > m_shownColumns.back().index && m_firstColumn < column) {
        ++m_firstColumn;
        layOut();
    }
}

bool TableBlockContent::handleKey(const QKeyEvent &event) {
    if (event.matches(QKeySequence::Paste)) {
        return paste();
    }
    if (event.matches(QKeySequence::Copy) && !field()->hasSelection()) {
        QGuiApplication::clipboard()->setText(m_table.toTabSeparated());
        return true;
    }
    const bool isShiftHeld = event.modifiers().testFlag(Qt::ShiftModifier);
    switch (event.key()) {
    case Qt::Key_Tab:
        walk(1);
        return true;
    case Qt::Key_Backtab:
        walk(-1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (isShiftHeld) {
            return false;
        }
        if (const auto below = openableFrom(placeOf(m_cell) + m_table.columnCount(), m_table.columnCount())) {
            edit(*below, Caret::all);
        } else {
            commit();
        }
        return true;
    case Qt::Key_Up:
        return !isShiftHeld && walkByLine(-1);
    case Qt::Key_Down:
        return !isShiftHeld && walkByLine(1);
    case Qt::Key_Left:
        return !isShiftHeld && field()->isCaretAtStart() && walkByCharacter(-1);
    case Qt::Key_Right:
        return !isShiftHeld && field()->isCaretAtEnd() && walkByCharacter(1);
    default:
        return false;
    }
}

/// From row to row; behind the last cell a new row begins.
void TableBlockContent::walk(int step) {
    std::optional<Cell> next = openableFrom(placeOf(m_cell) + step, step);
    if (!next && step > 0) {
        m_table.insertRow(m_table.rowCount());
        writeShape();
        next = Cell{m_table.rowCount() - 1, 0};
    }
    if (next) {
        edit(*next, Caret::all);
    }
}

bool TableBlockContent::walkByCharacter(int step) {
    if (const auto next = openableFrom(placeOf(m_cell) + step, step)) {
        edit(*next, step < 0 ? Caret::end : Caret::start);
    }
    return true;
}

/// Within a cell of several lines the caret goes from line to line first.
bool TableBlockContent::walkByLine(int step) {
    const bool isAtEdge = isCaretInLastLine(step);
    const int toRow = step * m_table.columnCount();
    const auto next = isAtEdge ? openableFrom(placeOf(m_cell) + toRow, toRow) : std::nullopt;
    if (next) {
        edit(*next, Caret::end);
    }
    return isAtEdge;
}

bool TableBlockContent::paste() {
    const std::vector<QStringList> values = TableCells::fromTabSeparated(QGuiApplication::clipboard()->text());
    if (values.empty() || (values.size() < 2 && values.front().size() < 2)) {
        return false;
    }
    m_table.fill(m_cell.row, m_cell.column, values);
    writeShape();
    if (canOpen(m_cell)) {
        editor()->setText(editedText());
    }
    editOrEnd();
    return true;
}

std::optional<TableBlockContent::Cell> TableBlockContent::cellAt(QPointF point) const {
    const auto holds = [](double place) {
        return [place](const Span &span) { return place >= span.start && place < span.start + span.length; };
    };
    const auto row = std::ranges::find_if(m_shownRows, holds(point.y()));
    const auto span = std::ranges::find_if(m_shownColumns, holds(point.x()));
    if (row == m_shownRows.end() || span == m_shownColumns.end()) {
        return std::nullopt;
    }
    return Cell{row->index, span->index};
}

void TableBlockContent::placeCaret(QPointF point) {
    const std::optional<Cell> cell = cellAt(point);
    if (!cell) {
        return;
    }
    if (!canOpen(*cell)) {
        // Text typed after this click must not go into the previous cell.
        viewModel().endEditing();
        return;
    }
    edit(*cell, Caret::end);
    FieldsBody::placeCaret(point);
}

void TableBlockContent::mousePressEvent(QMouseEvent *event) {
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        event->ignore();
    } else {
        placeCaret(event->position());
    }
}

void TableBlockContent::wheelEvent(QWheelEvent *event) {
    event->setAccepted(takesWheel(*event));
    if (!event->isAccepted()) {
        return;
    }
    const QPoint angle = event->angleDelta();
    const int down = angle.y() < 0 ? 1 : angle.y() > 0 ? -1 : 0;
    const bool isSideways = event->modifiers().testFlag(Qt::ShiftModifier);
    m_firstRow += isSideways ? 0 : kRowsPerNotch * down;
    m_firstColumn += isSideways ? down : angle.x() < 0 ? 1 : angle.x() > 0 ? -1 : 0;
    layOut();
}

} // namespace tallowby
