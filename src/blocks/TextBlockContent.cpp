#include "blocks/TextBlockContent.h"

#include "platform/theme/Theme.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// A record from elsewhere may claim any size.
constexpr double kSmallestFont = 1;
constexpr double kLargestFont = 400;
const QUrl kEditorFile(QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/TextEditor.qml"));
constexpr QChar kEllipsis = u'\u2026';

} // namespace

void TextBlockContent::componentComplete() {
    BlockBody::componentComplete();
    connect(block(), &Block::rawTextChanged, this, &TextBlockContent::displayTextChanged);
    connect(block(), &Block::fontSizeChanged, this, &TextBlockContent::displayFontChanged);
    connect(block(), &Block::fontSizeChanged, this, &TextBlockContent::updateIsLegible);
    connect(block(), &Block::isBoldChanged, this, &TextBlockContent::displayFontChanged);
    connect(block(), &Block::isItalicChanged, this, &TextBlockContent::displayFontChanged);
    connect(block(), &Block::isStrikethroughChanged, this, &TextBlockContent::displayFontChanged);
    connect(block(), &Block::textColorChanged, this, &TextBlockContent::textColorChanged);
    connect(&Theme::shared(), &Theme::changed, this, &TextBlockContent::textColorChanged);
}

void TextBlockContent::setIsEditing(bool isEditing) {
    if (isEditing && !m_editor) {
        openEditor();
    } else if (!isEditing && m_editor) {
        closeEditor();
    }
    BlockBody::setIsEditing(isEditing);
    measure();
    Q_EMIT isDisplayShownChanged();
}

void TextBlockContent::openEditor() {
    QQmlComponent component(qmlEngine(this), kEditorFile);
    QObject *object = component.beginCreate(qmlContext(this));
    m_editor = qobject_cast<AutoExpandingTextEditor *>(object);
    if (!m_editor) {
        qFatal("The text editor could not be made: %s", qUtf8Printable(component.errorString()));
    }
    m_editor->setParent(this);
    m_editor->setParentItem(this);
    m_editor->setSize(size());
    m_editor->setText(block()->rawTextOrEmpty());
    dressEditor();
    component.completeCreate();

    connect(block(), &Block::rawTextChanged, m_editor, [this] { m_editor->setText(block()->rawTextOrEmpty()); });
    connect(this, &TextBlockContent::displayFontChanged, m_editor, [this] { dressEditor(); });
    connect(this, &TextBlockContent::textColorChanged, m_editor, [this] { dressEditor(); });
    connect(m_editor, &AutoExpandingTextEditor::textChanged, this,
            [this] { viewModel().setText(*block(), m_editor->text()); });
    connect(m_editor, &AutoExpandingTextEditor::usedSizeChanged, this, &TextBlockContent::measure);
    connect(m_editor, &AutoExpandingTextEditor::isBlankChanged, this, &TextBlockContent::isDisplayShownChanged);
    connect(m_editor, &AutoExpandingTextEditor::committed, this, [this] { viewModel().endEditing(); });
}

void TextBlockContent::closeEditor() {
    // It may be in the middle of the key press that closes it.
    m_editor->disconnect(this);
    m_editor->setVisible(false);
    m_editor->deleteLater();
    m_editor = nullptr;
}

void TextBlockContent::dressEditor() {
    m_editor->setFont(displayFont());
    m_editor->setTextColor(textColor());
}

void TextBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    if (m_editor) {
        m_editor->setSize(newGeometry.size());
    }
}

void TextBlockContent::setDisplaySize(QSizeF size) {
    if (m_displaySize != size) {
        m_displaySize = size;
        measure();
        Q_EMIT displaySizeChanged();
    }
}

void TextBlockContent::measure() {
    // A text of which only the beginning is shown measures itself while it is edited.
    if (m_editor || block()->rawTextOrEmpty().size() <= kLongestDisplay) {
        const QSizeF used = m_editor ? m_editor->usedSize() : m_displaySize;
        setMeasuredSize(AutoExpandingTextEditor::intrinsicSize(used).expandedTo(kSmallestSize));
    }
}

bool TextBlockContent::isEmpty() const {
    return block()->rawTextOrEmpty().isEmpty();
}

QString TextBlockContent::displayText() const {
    QString text = block()->rawTextOrEmpty();
    if (text.size() > kLongestDisplay) {
        text.truncate(kLongestDisplay);
        text += kEllipsis;
    }
    return text;
}

qreal TextBlockContent::wrapWidth() const {
    return AutoExpandingTextEditor::wrapWidthFor(displayText());
}

QFont TextBlockContent::styledDisplayFont(double size, bool isBold, bool isItalic) {
    const double bounded = std::isfinite(size) ? std::clamp(size, kSmallestFont, kLargestFont) : kSmallestFont;
    QFont font(Theme::shared().handFamily());
    font.setPixelSize(int(std::lround(bounded)));
    font.setBold(isBold);
    font.setItalic(isItalic);
    return font;
}

QFont TextBlockContent::displayFont() const {
    QFont font = styledDisplayFont(block()->fontSize(), block()->isBold(), block()->isItalic());
    font.setStrikeOut(block()->isStrikethrough());
    return font;
}

double TextBlockContent::textSize() const {
    return displayFont().pixelSize();
}

QColor TextBlockContent::textColor() const {
    return Theme::shared().textColor(block()->textColor());
}

QQuickItem *TextBlockContent::inputItem() const {
    return m_editor ? m_editor->textEdit() : nullptr;
}

void TextBlockContent::placeCaret(QPointF point) {
    if (m_editor) {
        m_editor->placeCaret(mapToItem(m_editor, point));
    }
}

} // namespace tallowby
