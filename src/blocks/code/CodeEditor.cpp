#include "blocks/code/CodeEditor.h"

#include <QKeyEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace tallowby {

namespace {

int leadingBlanks(const QString &line) {
    const auto end = std::ranges::find_if(line, [](QChar character) { return character != u' '; });
    return int(end - line.begin());
}

/// What a line that ends with one of these opens stands further in.
bool opensBlock(const QString &line) {
    const QString text = line.trimmed();
    return !text.isEmpty() && QStringLiteral("{([:").contains(text.back());
}

} // namespace

bool CodeEditor::handleKey(const QKeyEvent &event) {
    if (!preedit().isEmpty()) {
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event.modifiers().testFlag(Qt::ControlModifier)) {
            Q_EMIT committed();
        } else {
            breakLine();
        }
        return true;
    case Qt::Key_Tab:
        indent();
        return true;
    case Qt::Key_Backtab:
        outdent();
        return true;
    default:
        return AutoExpandingTextEditor::handleKey(event);
    }
}

QTextCursor CodeEditor::selection() const {
    QTextCursor cursor(document());
    cursor.setPosition(textEdit()->property("selectionStart").toInt());
    cursor.setPosition(textEdit()->property("selectionEnd").toInt(), QTextCursor::KeepAnchor);
    return cursor;
}

void CodeEditor::breakLine() {
    QTextCursor cursor = selection();
    const int start = cursor.selectionStart();
    const QTextBlock line = document()->findBlock(start);
    const QString before = line.text().left(start - line.position());
    const int blanks = leadingBlanks(before) + (opensBlock(before) ? kIndentation : 0);
    cursor.insertText(u'\n' + QString(blanks, u' '));
}

void CodeEditor::indent() {
    QTextCursor cursor = selection();
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    const QTextBlock last = document()->findBlock(cursor.selectionEnd());
    if (first == last) {
        const int column = cursor.selectionStart() - first.position();
        cursor.insertText(QString(kIndentation - column % kIndentation, u' '));
        return;
    }
    cursor.beginEditBlock();
    for (QTextBlock line = first; line.isValid() && line.blockNumber() <= last.blockNumber(); line = line.next()) {
        QTextCursor(line).insertText(QString(kIndentation, u' '));
    }
    cursor.endEditBlock();
}

void CodeEditor::outdent() {
    QTextCursor cursor = selection();
    const int lastNumber = document()->findBlock(cursor.selectionEnd()).blockNumber();
    cursor.beginEditBlock();
    for (QTextBlock line = document()->findBlock(cursor.selectionStart());
         line.isValid() && line.blockNumber() <= lastNumber; line = line.next()) {
        QTextCursor start(line);
        start.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor,
                           std::min(kIndentation, leadingBlanks(line.text())));
        start.removeSelectedText();
    }
    cursor.endEditBlock();
}

} // namespace tallowby
