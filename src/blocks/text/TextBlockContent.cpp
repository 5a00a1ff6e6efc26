#include "blocks/text/TextBlockContent.h"

#include "platform/theme/Theme.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// A record from elsewhere may claim any size.
constexpr double kSmallestFont = 1;
constexpr double kLargestFont = 400;
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
    EditedBody::setIsEditing(isEditing);
    measure();
}

void TextBlockContent::editorOpened(AutoExpandingTextEditor &editor) {
    connect(this, &TextBlockContent::displayFontChanged, &editor, [this] { refreshEditor(); });
    connect(this, &TextBlockContent::textColorChanged, &editor, [this] { refreshEditor(); });
    connect(&editor, &AutoExpandingTextEditor::usedSizeChanged, this, &TextBlockContent::measure);
}

void TextBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    editor.setSize(size());
    editor.setFont(displayFont());
    editor.setTextColor(textColor());
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

} // namespace tallowby
