#include "blocks/text/TextBlockContent.h"

#include "blocks/text/TextStyle.h"
#include "platform/theme/Theme.h"

namespace tallowby {

namespace {

constexpr QChar kEllipsis = u'\u2026';

} // namespace

void TextBlockContent::componentComplete() {
    LinkedBody::componentComplete();
    connect(block(), &Block::rawTextChanged, this, &TextBlockContent::displayTextChanged);
    followTextStyle(*block(), this, [this] {
        Q_EMIT displayFontChanged();
        updateIsLegible();
    });
    connect(block(), &Block::textColorChanged, this, &TextBlockContent::textColorChanged);
    connect(&Theme::shared(), &Theme::changed, this, &TextBlockContent::textColorChanged);
    for (const auto signal : {&TextBlockContent::displayTextChanged, &TextBlockContent::displayFontChanged,
                              &TextBlockContent::textColorChanged}) {
        connect(this, signal, this, &TextBlockContent::refreshLinks);
    }
}

void TextBlockContent::setIsEditing(bool isEditing) {
    LinkedBody::setIsEditing(isEditing);
    measure();
}

void TextBlockContent::editorOpened(AutoExpandingTextEditor &editor) {
    LinkedBody::editorOpened(editor);
    connect(this, &TextBlockContent::displayFontChanged, &editor, [this] { refreshEditor(); });
    connect(this, &TextBlockContent::textColorChanged, &editor, [this] { refreshEditor(); });
    connect(&editor, &AutoExpandingTextEditor::usedSizeChanged, this, &TextBlockContent::measure);
}

void TextBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    editor.setSize(size());
    editor.setFont(displayFont());
    editor.setTextColor(textColor());
    editor.setIsStruck(block()->isStrikethrough());
}

LinkedBody::Display TextBlockContent::display() const {
    return {.text = displayText(),
            .font = displayFont(),
            .color = textColor(),
            .linkColor = Theme::shared().accent(),
            .isStruck = block()->isStrikethrough(),
            .position = {AutoExpandingTextEditor::kHorizontalInset, AutoExpandingTextEditor::kVerticalInset},
            .width = wrapWidth(),
            .room = width() - AutoExpandingTextEditor::kHorizontalInset,
            .breaksWords = true};
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
    if (editor() || block()->rawTextOrEmpty().size() <= kLongestDisplay) {
        const QSizeF used = editor() ? editor()->usedSize() : m_displaySize;
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
    QFont font = boundedFont({Theme::shared().handFamily()}, size);
    font.setBold(isBold);
    font.setItalic(isItalic);
    return font;
}

QFont TextBlockContent::displayFont() const {
    return styledFont(*block(), {Theme::shared().handFamily()}, block()->fontSize());
}

double TextBlockContent::textSize() const {
    return displayFont().pixelSize();
}

QColor TextBlockContent::textColor() const {
    return Theme::shared().textColor(block()->textColor());
}

} // namespace tallowby
