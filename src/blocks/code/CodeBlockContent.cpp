#include "blocks/code/CodeBlockContent.h"

#include "blocks/code/CodeEditor.h"
#include "blocks/code/CodeHighlighter.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickTextDocument>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// The record has no room of its own for the chosen language that would survive a restart.
const QString kLanguageKey = QStringLiteral("codeLanguage");
const QString kExample = QStringLiteral("print(\"Hello World\")");
/// In characters; far more than is in view.
constexpr qsizetype kLongestDisplay = 20'000;
constexpr int kLetters = 13;
constexpr double kGutterPadding = 12;
constexpr double kCopyWidth = 36;
constexpr double kLabelWidth = 96;

QTextDocument *documentOf(const QQuickItem &textEdit) {
    return textEdit.property("textDocument").value<QQuickTextDocument *>()->textDocument();
}

} // namespace

void CodeBlockContent::componentComplete() {
    EditedBody::componentComplete();
    m_displayHighlighter = new CodeHighlighter(documentOf(*m_display));
    followLanguage();
    connect(block(), &Block::contentChanged, this, &CodeBlockContent::followLanguage);
    connect(block(), &Block::codeLanguageChanged, this, &CodeBlockContent::followLanguage);
    connect(block(), &Block::rawTextChanged, this, [this] {
        Q_EMIT displayTextChanged();
        setIsCopied(false);
        followLanguage();
        layOut();
    });
    connect(block(), &Block::isSelectedChanged, this, [this] {
        setIsMenuOpen(m_isMenuOpen && block()->isSelected());
        setIsCopied(false);
    });
    connect(&canvas(), &InfiniteCanvasView::turningAway, this, [this] { setIsMenuOpen(false); });
    layOut();
}

// What is shown.

QString CodeBlockContent::displayText() const {
    const QString text = block()->rawTextOrEmpty();
    return text.isEmpty() ? kExample : text.left(kLongestDisplay);
}

qreal CodeBlockContent::wrapWidth() const {
    return AutoExpandingTextEditor::wrapWidthFor(displayText());
}

QFont CodeBlockContent::codeFont() const {
    QFont font(Theme::shared().codeFamily());
    font.setPixelSize(kLetters);
    font.setStyleHint(QFont::Monospace);
    return font;
}

QVariantList CodeBlockContent::windowDots() const {
    return {QColor(0xFF, 0x5F, 0x56), QColor(0xFF, 0xBD, 0x2E), QColor(0x27, 0xC9, 0x3F)};
}

int CodeBlockContent::lineCount() const {
    return int(editor() ? editor()->text().count(u'\n') : displayText().count(u'\n')) + 1;
}

QSizeF CodeBlockContent::contentSize() const {
    return editor() && !editor()->isBlank() ? editor()->usedSize() : m_displaySize;
}

double CodeBlockContent::lineHeight() const {
    return std::max(1.0, contentSize().height() / lineCount());
}

double CodeBlockContent::gutterWidth() const {
    const auto digits = double(QString::number(lineCount()).size());
    return std::ceil(std::max(2.0, digits) * QFontMetricsF(codeFont()).horizontalAdvance(u'0')) + 2 * kGutterPadding;
}

QString CodeBlockContent::lineNumbers() const {
    const int first = int(m_scroll.y() / lineHeight());
    const int last = std::min(lineCount(), first + int(viewportSize().height() / lineHeight()) + 2);
    QStringList numbers;
    for (int line = first + 1; line <= last; ++line) {
        numbers << QString::number(line);
    }
    return numbers.join(u'\n');
}

double CodeBlockContent::lineNumbersTop() const {
    return std::floor(m_scroll.y() / lineHeight()) * lineHeight() - m_scroll.y();
}

// Layout.

void CodeBlockContent::setDisplaySize(QSizeF size) {
    if (m_displaySize != size) {
        m_displaySize = size;
        if (isComponentComplete()) {
            layOut();
        }
    }
}

QSizeF CodeBlockContent::viewportSize() const {
    return {std::max(0.0, width() - gutterWidth() - kPadding), std::max(0.0, height() - kHeaderHeight - kPadding)};
}

void CodeBlockContent::layOut() {
    const QSizeF content = contentSize();
    const QSizeF needed(std::ceil(content.width()) + gutterWidth() + kPadding + 2,
                        std::ceil(content.height()) + kHeaderHeight + 2 * kPadding);
    const QSizeF bounded = needed.boundedTo(kLargest).expandedTo(kSmallest);
    insistOnSize({std::max(width(), bounded.width()), bounded.height()});
    scrollTo(m_scroll);
}

void CodeBlockContent::scrollTo(QPointF offset) {
    const QSizeF content = contentSize();
    const QSizeF room = viewportSize();
    // A little behind the longest line stays free for the caret.
    m_scroll = {std::clamp(offset.x(), 0.0, std::max(0.0, content.width() + kPadding - room.width())),
                std::clamp(offset.y(), 0.0, std::max(0.0, content.height() + kPadding - room.height()))};
    refreshEditor();
    Q_EMIT layoutChanged();
}

void CodeBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    EditedBody::geometryChange(newGeometry, oldGeometry);
    if (isComponentComplete()) {
        layOut();
    }
}

void CodeBlockContent::wheelEvent(QWheelEvent *event) {
    const QPointF before = m_scroll;
    const bool isOurs = (isEditing() || block()->isSelected()) && !event->modifiers().testFlag(Qt::ControlModifier);
    if (isOurs) {
        constexpr double kPointsPerUnit = 0.4;
        const QPointF delta =
            event->pixelDelta().isNull() ? QPointF(event->angleDelta()) * kPointsPerUnit : QPointF(event->pixelDelta());
        scrollTo(m_scroll - delta);
    }
    event->setAccepted(isOurs && m_scroll != before);
}

// The editor.

void CodeBlockContent::setIsEditing(bool isEditing) {
    if (!isEditing) {
        m_editorHighlighter = nullptr;
        setIsMenuOpen(false);
    }
    EditedBody::setIsEditing(isEditing);
    setAcceptedMouseButtons(isEditing ? Qt::LeftButton : Qt::NoButton);
    layOut();
}

void CodeBlockContent::editorOpened(AutoExpandingTextEditor &editor) {
    m_editorHighlighter = new CodeHighlighter(static_cast<CodeEditor &>(editor).document());
    m_editorHighlighter->setLanguage(CodeLanguage::named(m_language));
    connect(&editor, &AutoExpandingTextEditor::usedSizeChanged, this, &CodeBlockContent::layOut);
    connect(&editor, &AutoExpandingTextEditor::isBlankChanged, this, &CodeBlockContent::layOut);
    connect(editor.textEdit(), SIGNAL(cursorRectangleChanged()), this, SLOT(followCaret()));
}

void CodeBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    editor.setParentItem(m_viewport);
    editor.setPosition(-m_scroll);
    editor.setSize(viewportSize().expandedTo(contentSize()));
    editor.setFont(codeFont());
    editor.setTextColor(Theme::shared().codeInk());
}

void CodeBlockContent::followCaret() {
    if (!inputItem()) {
        return;
    }
    const QRectF caret = inputItem()->property("cursorRectangle").toRectF();
    const QSizeF room = viewportSize();
    QPointF offset = m_scroll;
    if (caret.right() + kPadding > offset.x() + room.width()) {
        offset.setX(caret.right() + kPadding - room.width());
    } else {
        offset.setX(std::min(offset.x(), caret.left()));
    }
    if (caret.bottom() > offset.y() + room.height()) {
        offset.setY(caret.bottom() - room.height());
    } else {
        offset.setY(std::min(offset.y(), caret.top()));
    }
    scrollTo(offset);
}

void CodeBlockContent::placeCaret(QPointF point) {
    if (point.y() >= kHeaderHeight) {
        EditedBody::placeCaret(point);
    }
}

// The header.

void CodeBlockContent::followLanguage() {
    const auto chosen = block()->contentField(kLanguageKey);
    const QString *kept = chosen ? std::get_if<QString>(&chosen->value()) : nullptr;
    const CodeLanguage &language = CodeLanguage::named(kept ? *kept : block()->codeLanguage());
    m_displayHighlighter->setLanguage(isEmpty() ? CodeLanguage::named({}) : language);
    if (m_editorHighlighter) {
        m_editorHighlighter->setLanguage(language);
    }
    if (m_language != language.id) {
        m_language = language.id;
        Q_EMIT languageChanged();
    }
}

QStringList CodeBlockContent::languages() const {
    QStringList ids;
    std::ranges::transform(CodeLanguage::all(), std::back_inserter(ids), &CodeLanguage::id);
    return ids;
}

void CodeBlockContent::chooseLanguage(const QString &language) {
    block()->setCodeLanguage(language);
    viewModel().setContentField(*block(), kLanguageKey, language);
    setIsMenuOpen(false);
}

void CodeBlockContent::copy() {
    QGuiApplication::clipboard()->setText(block()->rawTextOrEmpty());
    setIsCopied(true);
}

void CodeBlockContent::toggleMenu() {
    setIsMenuOpen(!m_isMenuOpen);
}

void CodeBlockContent::setIsMenuOpen(bool isOpen) {
    if (m_isMenuOpen != isOpen) {
        m_isMenuOpen = isOpen;
        Q_EMIT isMenuOpenChanged();
    }
}

void CodeBlockContent::setIsCopied(bool isCopied) {
    if (m_isCopied != isCopied) {
        m_isCopied = isCopied;
        Q_EMIT isCopiedChanged();
    }
}

bool CodeBlockContent::click(QPointF point, Qt::KeyboardModifiers) {
    if (point.y() >= kHeaderHeight || point.x() < width() - kCopyWidth - kLabelWidth) {
        return false;
    }
    if (point.x() >= width() - kCopyWidth) {
        copy();
        return true;
    }
    if (!isEditing() && !block()->isSelected()) {
        return false;
    }
    toggleMenu();
    return true;
}

void CodeBlockContent::mousePressEvent(QMouseEvent *event) {
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        event->ignore();
    } else if (!click(event->position(), event->modifiers())) {
        setIsMenuOpen(false);
        placeCaret(event->position());
    }
}

void CodeBlockContent::setZoom(double zoom) {
    EditedBody::setZoom(zoom);
    if (m_isMenuOpen) {
        Q_EMIT chromeScaleChanged();
    }
}

} // namespace tallowby
