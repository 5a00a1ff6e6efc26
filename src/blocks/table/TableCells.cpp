#include "blocks/table/TableCells.h"

#include <algorithm>

namespace tallowby {

namespace {

/// A pasted text of more rows or columns stays one text.
constexpr qsizetype kMaxPastedRows = 10'000;
constexpr qsizetype kMaxPastedColumns = 500;

QString textOf(const AnyCodable &cell) {
    const auto &value = cell.value();
    if (const auto *text = std::get_if<QString>(&value)) {
        return *text;
    }
    if (std::holds_alternative<std::nullptr_t>(value)) {
        return {};
    }
    return QString::fromUtf8(cell.toJson().value_or(QByteArray()));
}

} // namespace

TableCells::TableCells(const Block &block) {
    const auto cells = block.contentField(QStringLiteral("cells"));
    if (const auto *rows = cells ? std::get_if<AnyCodable::Array>(&cells->value()) : nullptr) {
        for (const AnyCodable &row : *rows) {
            const auto *values = std::get_if<AnyCodable::Array>(&row.value());
            m_rows.push_back(values ? *values : AnyCodable::Array{row});
        }
    } else {
        // A payload with a strange member elsewhere may still have cells that can be read.
        for (const QStringList &row : block.tableData()) {
            m_rows.emplace_back(row.begin(), row.end());
        }
    }
    if (m_rows.empty()) {
        m_rows.resize(1);
    }
    recount();
}

void TableCells::recount() {
    std::size_t longest = 1;
    for (const AnyCodable::Array &row : m_rows) {
        longest = std::max(longest, row.size());
    }
    m_columnCount = int(longest);
}

QString TableCells::text(int row, int column) const {
    const AnyCodable::Array &cells = m_rows.at(std::size_t(row));
    return column < int(cells.size()) ? textOf(cells[std::size_t(column)]) : QString();
}

void TableCells::setText(int row, int column, const QString &text) {
    AnyCodable::Array &cells = m_rows.at(std::size_t(row));
    while (int(cells.size()) <= column) {
        cells.emplace_back(QString());
    }
    cells[std::size_t(column)] = AnyCodable(text);
}

void TableCells::insertRow(int row) {
    m_rows.insert(m_rows.begin() + row, AnyCodable::Array(std::size_t(m_columnCount), AnyCodable(QString())));
}

void TableCells::insertColumn(int column) {
    for (AnyCodable::Array &row : m_rows) {
        while (int(row.size()) < column) {
            row.emplace_back(QString());
        }
        row.insert(row.begin() + column, AnyCodable(QString()));
    }
    recount();
}

void TableCells::removeRow(int row) {
    if (rowCount() > 1) {
        m_rows.erase(m_rows.begin() + row);
        recount();
    }
}

void TableCells::removeColumn(int column) {
    if (columnCount() > 1) {
        for (AnyCodable::Array &row : m_rows) {
            if (column < int(row.size())) {
                row.erase(row.begin() + column);
            }
        }
        recount();
    }
}

void TableCells::fill(int row, int column, const std::vector<QStringList> &values) {
    for (int i = 0; i < int(values.size()); ++i) {
        if (row + i >= rowCount()) {
            insertRow(rowCount());
        }
        const QStringList &line = values[std::size_t(i)];
        for (int j = 0; j < int(line.size()); ++j) {
            setText(row + i, column + j, line[j]);
        }
    }
    recount();
}

AnyCodable TableCells::toPayload() const {
    AnyCodable::Array rows;
    rows.reserve(m_rows.size());
    for (const AnyCodable::Array &row : m_rows) {
        rows.emplace_back(row);
    }
    return rows;
}

QString TableCells::toTabSeparated() const {
    QString result;
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            QString cell = text(row, column);
            cell.replace(u'\t', u' ').replace(u'\n', u' ');
            result += (column > 0 ? QStringLiteral("\t") : QString()) + cell;
        }
        result += u'\n';
    }
    return result;
}

std::vector<QStringList> TableCells::fromTabSeparated(const QString &text) {
    QString lines = text;
    lines.remove(u'\r');
    if (lines.endsWith(u'\n')) {
        lines.chop(1);
    }
    std::vector<QStringList> rows;
    for (const QString &line : lines.split(u'\n')) {
        rows.push_back(line.split(u'\t'));
        if (std::ssize(rows) > kMaxPastedRows || rows.back().size() > kMaxPastedColumns) {
            return {};
        }
    }
    return rows;
}

} // namespace tallowby
