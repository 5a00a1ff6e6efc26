#include "blocks/text/TextBlockContent.h"

#include "blocks/text/TextStyle.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

constexpr QChar kEllipsis = u'\u2026';
const QString kOwnWidthKey = QStringLiteral("ownWidth");
/// Between two measures of the same text, in points.
constexpr double kTolerance = 0.5;

/// 0 for what is no number.
double numberIn(const AnyCodable &value) {
    if (const auto *whole = std::get_if<std::int64_t>(&value.value())) {
        return double(*whole);
    }
    const auto *number = std::get_if<double>(&value.value());
    return number ? *number : 0;
}

} // namespace

void TextBlockContent::componentComplete() {
    followContent();
    LinkedBody::componentComplete();
    connect(block(), &Block::contentChanged, this, &TextBlockContent::followContent);
    connect(this, &TextBlockContent::displayTextChanged, this, &TextBlockContent::wrapWidthChanged);
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
    editor.setProperty("wrapsAtWidth", hasGivenWidth());
}

LinkedBody::Display TextBlockContent::display() const {
    return {.text = displayText(),
            .font = displayFont(),
            .color = textColor(),
            .linkColor = Theme::shared().accent(),
            .isStruck = block()->isStrikethrough(),
            .position = {AutoExpandingTextEditor::kHorizontalInset, AutoExpandingTextEditor::kVerticalInset},
            .width = wrapWidth(),
            .room = width() - 2 * AutoExpandingTextEditor::kHorizontalInset,
            .breaksWords = !hasGivenWidth()};
}

void TextBlockContent::setDisplaySize(QSizeF size) {
    if (m_displaySize != size) {
        m_displaySize = size;
        measure();
        Q_EMIT displaySizeChanged();
    }
}

void TextBlockContent::measure() {
    const bool isGiven = hasGivenWidth();
    // A text of which only the beginning is shown measures itself while it is edited.
    if (!editor() && !isGiven && block()->rawTextOrEmpty().size() > kMaxDisplay) {
        return;
    }
    const QSizeF used = editor() ? editor()->usedSize() : m_displaySize;
    const QSizeF own = AutoExpandingTextEditor::intrinsicSize(used).expandedTo(kSmallestSize);
    if (isGiven) {
        // A single letter may be wider than what the text was given.
        insistOnSize({std::max(width(), own.width()), own.height()});
        return;
    }
    m_lineWidth = std::ceil(used.width()) + 2 * AutoExpandingTextEditor::kHorizontalInset;
    const QSizeF before = std::exchange(m_ownSize, own);
    if (before == own && !editor()) {
        // Only the frame has changed, and it stays as it was given.
        return;
    }
    if (m_ownWidth > 0 && !before.isEmpty() && before != own) {
        m_ownWidth = own.width();
        if (editor()) {
            viewModel().setContentField(*block(), kOwnWidthKey, AnyCodable());
        }
    }
    setMeasuredSize(own);
}

void TextBlockContent::followContent() {
    const auto kept = block()->contentField(kOwnWidthKey);
    m_ownWidth = kept ? numberIn(*kept) : 0;
    updateGivenWidth();
}

bool TextBlockContent::hasGivenWidth() const {
    return m_isPulled || (m_ownWidth > 0 && std::abs(width() - m_ownWidth) > kTolerance);
}

void TextBlockContent::updateGivenWidth() {
    const double givenWidth = hasGivenWidth() ? width() : 0;
    if (std::exchange(m_givenWidth, givenWidth) != givenWidth) {
        refreshEditor();
        refreshLinks();
        Q_EMIT wrapWidthChanged();
    }
}

void TextBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    LinkedBody::geometryChange(newGeometry, oldGeometry);
    if (!isComponentComplete()) {
        return;
    }
    if (newGeometry.width() != oldGeometry.width()) {
        followPull(oldGeometry.width());
        updateGivenWidth();
    }
    if (hasGivenWidth()) {
        measure();
    }
}

/// The only width that changes while a button is down is that of the block that is pulled at.
void TextBlockContent::followPull(double widthBefore) {
    if (hasGivenWidth() || editor() || !block()->isSelected() || !canvas().isGestureRunning() ||
        width() >= m_lineWidth) {
        return;
    }
    m_isPulled = true;
    m_ownWidth = widthBefore;
    m_pullEnd = connect(&canvas(), &InfiniteCanvasView::isGestureRunningChanged, this, &TextBlockContent::endPull);
}

/// A pull that was given up, or came back to where all lines have room, has given the text no width.
void TextBlockContent::endPull() {
    disconnect(m_pullEnd);
    m_isPulled = false;
    if (width() < m_lineWidth) {
        viewModel().setContentField(*block(), kOwnWidthKey, m_ownWidth);
    }
    followContent();
}

bool TextBlockContent::isEmpty() const {
    return block()->rawTextOrEmpty().isEmpty();
}

QString TextBlockContent::displayText() const {
    QString text = block()->rawTextOrEmpty();
    if (text.size() > kMaxDisplay) {
        text.truncate(kMaxDisplay);
        text += kEllipsis;
    }
    return text;
}

qreal TextBlockContent::wrapWidth() const {
    return hasGivenWidth() ? std::max(1.0, width() - 2 * AutoExpandingTextEditor::kHorizontalInset)
                           : AutoExpandingTextEditor::wrapWidthFor(displayText());
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
