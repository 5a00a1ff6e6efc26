#include "blocks/text/AutoExpandingTextEditor.h"

#include "canvas/model/CanvasViewModel.h"
#include "canvas/view/CanvasKeys.h"
#include "platform/VirtualKey.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickTextDocument>
#include <QScopedValueRollback>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// Lines grow with their text, up to here: a pasted log of one line would be wider than a texture or a number can be.
constexpr qsizetype kLongLine = 2'000;
constexpr qreal kLongLineWrapWidth = 8'000;

constexpr const char *kCursorPosition = "cursorPosition";

/// Where frames begin and end in a document.
constexpr QChar kFrameStart = u'\xfdd0';
constexpr QChar kFrameEnd = u'\xfdd1';

} // namespace

QSizeF AutoExpandingTextEditor::intrinsicSize(QSizeF used) {
    const QSizeF padded(std::ceil(used.width()) + 2 * kHorizontalInset, std::ceil(used.height()) + 2 * kVerticalInset);
    return padded.expandedTo(kSmallestSize);
}

qreal AutoExpandingTextEditor::wrapWidthFor(QStringView text) {
    qsizetype start = 0;
    while (text.size() - start > kLongLine) {
        const qsizetype lineBreak = text.indexOf(u'\n', start);
        const qsizetype end = lineBreak < 0 ? text.size() : lineBreak;
        if (end - start > kLongLine) {
            return kLongLineWrapWidth;
        }
        start = end + 1;
    }
    return 0;
}

void AutoExpandingTextEditor::setTextEdit(QQuickItem *textEdit) {
    if (m_textEdit == textEdit) {
        return;
    }
    m_textEdit = textEdit;
    m_textEdit->installEventFilter(this);
    // The middle button pans the canvas.
    m_textEdit->setAcceptedMouseButtons(Qt::LeftButton);
    m_document = m_textEdit->property("textDocument").value<QQuickTextDocument *>()->textDocument();
    Q_EMIT textEditChanged();
}

void AutoExpandingTextEditor::componentComplete() {
    QQuickItem::componentComplete();
    showText();
    m_text = documentText();
    m_textEdit->setProperty(kCursorPosition, m_text.size());
    connect(m_document, &QTextDocument::contentsChanged, this, &AutoExpandingTextEditor::takeEdit);
}

void AutoExpandingTextEditor::setText(const QString &text) {
    if (m_ownersText == text || !m_preedit.isEmpty()) {
        return;
    }
    m_ownersText = text;
    if (isComponentComplete()) {
        showText();
    }
    adopt(isComponentComplete() ? documentText() : text);
}

void AutoExpandingTextEditor::forgetHistory() {
    m_document->clearUndoRedoStacks();
}

void AutoExpandingTextEditor::setFont(const QFont &font) {
    if (m_font != font) {
        m_font = font;
        Q_EMIT fontChanged();
    }
}

void AutoExpandingTextEditor::setTextColor(const QColor &color) {
    if (m_textColor != color) {
        m_textColor = color;
        Q_EMIT textColorChanged();
    }
}

void AutoExpandingTextEditor::setIsStruck(bool isStruck) {
    if (m_isStruck != isStruck) {
        m_isStruck = isStruck;
        Q_EMIT isStruckChanged();
    }
}

void AutoExpandingTextEditor::showText() {
    if (documentText() == m_ownersText) {
        return;
    }
    const QScopedValueRollback showing(m_isShowing, true);
    // The item takes a text that differs in nothing but no-break spaces for the one that it has.
    m_textEdit->setProperty("text", QString());
    m_textEdit->setProperty("text", m_ownersText);
}

/// The document says that it has changed, also when only its looks have.
void AutoExpandingTextEditor::takeEdit() {
    const QString text = documentText();
    if (!m_isShowing && text != m_text) {
        take(text);
    }
}

void AutoExpandingTextEditor::take(const QString &text) {
    m_ownersText = text;
    adopt(text);
    Q_EMIT edited();
}

/// As `QTextDocument::toPlainText`, but no-break spaces stay what they are, and so do line separators that the text
/// came with.
QString AutoExpandingTextEditor::documentText() const {
    QString text = m_document->toRawText();
    const bool keepsSeparators = m_ownersText.contains(QChar::LineSeparator);
    for (QChar &character : text) {
        const bool isBreak = character == QChar::ParagraphSeparator || character == kFrameStart ||
                             character == kFrameEnd || (character == QChar::LineSeparator && !keepsSeparators);
        if (isBreak) {
            character = u'\n';
        }
    }
    return text;
}

void AutoExpandingTextEditor::adopt(const QString &text) {
    m_text = text;
    updateIsBlank();
    const qreal wrapWidth = wrapWidthFor(m_text);
    if (m_wrapWidth != wrapWidth) {
        m_wrapWidth = wrapWidth;
        Q_EMIT wrapWidthChanged();
    }
    Q_EMIT textChanged();
}

void AutoExpandingTextEditor::updateIsBlank() {
    const bool isBlank = m_text.isEmpty() && m_preedit.isEmpty();
    if (m_isBlank != isBlank) {
        m_isBlank = isBlank;
        Q_EMIT isBlankChanged();
    }
}

void AutoExpandingTextEditor::setPreedit(const QString &preedit) {
    if (m_preedit != preedit) {
        m_preedit = preedit;
        updateIsBlank();
        Q_EMIT preeditChanged();
    }
}

void AutoExpandingTextEditor::placeCaret(QPointF point) {
    const QPointF inEdit = mapToItem(m_textEdit, point);
    int position = 0;
    QMetaObject::invokeMethod(m_textEdit, "positionAt", Q_RETURN_ARG(int, position), Q_ARG(double, inEdit.x()),
                              Q_ARG(double, inEdit.y()));
    m_textEdit->setProperty(kCursorPosition, position);
}

int AutoExpandingTextEditor::caret() const {
    return m_textEdit->property(kCursorPosition).toInt();
}

void AutoExpandingTextEditor::setCaret(int position) {
    m_textEdit->setProperty(kCursorPosition, std::clamp(position, 0, int(m_text.size())));
}

bool AutoExpandingTextEditor::hasSelection() const {
    return m_textEdit->property("selectionStart") != m_textEdit->property("selectionEnd");
}

void AutoExpandingTextEditor::selectAll() {
    QMetaObject::invokeMethod(m_textEdit, "selectAll");
}

bool AutoExpandingTextEditor::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_textEdit && event->type() == QEvent::KeyPress) {
        return handleKey(*static_cast<QKeyEvent *>(event)) || QQuickItem::eventFilter(watched, event);
    }
    return QQuickItem::eventFilter(watched, event);
}

bool AutoExpandingTextEditor::handleKey(const QKeyEvent &event) {
    const auto key = virtualKeyOf(event);
    const bool isReturn = key == keycode::kReturn;
    if (isReturn && event.modifiers().testFlag(Qt::ShiftModifier)) {
        // The editor's own Shift and Return would put in a line separator, which other programs do not take for a
        // break.
        m_textEdit->removeEventFilter(this);
        QKeyEvent lineBreak(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        QCoreApplication::sendEvent(m_textEdit, &lineBreak);
        m_textEdit->installEventFilter(this);
        return true;
    }
    if (isReturn || key == keycode::kEscape) {
        Q_EMIT committed();
        return true;
    }
    return event.matches(QKeySequence::Paste) && pasteEnormousText();
}

/// A text that is too long to be edited goes to the owner without being laid out, and the editing ends.
bool AutoExpandingTextEditor::pasteEnormousText() {
    const QString pasted = QGuiApplication::clipboard()->text();
    if (m_text.size() + pasted.size() <= CanvasViewModel::kLongestEditedText) {
        return false;
    }
    const int start = m_textEdit->property("selectionStart").toInt();
    const int end = m_textEdit->property("selectionEnd").toInt();
    QString text = m_text;
    text.replace(start, end - start, pasted);
    take(text);
    Q_EMIT committed();
    return true;
}

} // namespace tallowby
