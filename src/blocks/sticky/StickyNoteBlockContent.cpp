#include "blocks/sticky/StickyNoteBlockContent.h"

#include "blocks/text/FieldEditor.h"
#include "blocks/text/TextMeasure.h"
#include "blocks/text/TextStyle.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// The record has no room of its own for the chosen paper that would survive a restart.
const QString kPaperKey = QStringLiteral("stickyColor");
/// In characters; far more than a note of any size that can be read.
constexpr qsizetype kLongestDisplay = 20'000;
/// Longer texts have the smallest letters anyhow; trying the others takes time.
constexpr qsizetype kLongTextForFitting = 3'000;
constexpr double kTallest = 20'000;

} // namespace

void StickyNoteBlockContent::componentComplete() {
    followContent();
    LinkedBody::componentComplete();
    connect(block(), &Block::contentChanged, this, &StickyNoteBlockContent::followContent);
    connect(block(), &Block::stickyColorChanged, this, &StickyNoteBlockContent::followContent);
    connect(this, &StickyNoteBlockContent::displayTextChanged, this, &StickyNoteBlockContent::refreshLinks);
    connect(this, &StickyNoteBlockContent::displayFontChanged, this, &StickyNoteBlockContent::refreshLinks);
    connect(block(), &Block::rawTextChanged, this, [this] {
        Q_EMIT displayTextChanged();
        fit();
    });
    const auto refit = [this] {
        fit();
        Q_EMIT displayFontChanged();
        refreshEditor();
    };
    followTextStyle(*block(), this, refit);
    connect(&Theme::shared(), &Theme::changed, this, &StickyNoteBlockContent::paperChanged);
    fit();
}

void StickyNoteBlockContent::followContent() {
    const auto chosen = block()->contentField(kPaperKey);
    const QString *kept = chosen ? std::get_if<QString>(&chosen->value()) : nullptr;
    const QStringList names = Theme::notePaperNames();
    const QString wanted = kept && names.contains(*kept) ? *kept : block()->stickyColor();
    const QString name = names.contains(wanted) ? wanted : names.front();
    if (m_paperName != name) {
        m_paperName = name;
        Q_EMIT paperChanged();
    }
}

QColor StickyNoteBlockContent::paper() const {
    return Theme::shared().notePaper(m_paperName);
}

QString StickyNoteBlockContent::displayText() const {
    QString text = block()->rawTextOrEmpty();
    if (text.size() > kLongestDisplay) {
        text.truncate(kLongestDisplay);
        text += u'\u2026';
    }
    return text;
}

QFont StickyNoteBlockContent::fontOf(int letters) const {
    return styledFont(*block(), Theme::shared().noteFamilies(), letters);
}

QFont StickyNoteBlockContent::displayFont() const {
    return fontOf(m_letters);
}

void StickyNoteBlockContent::fit() {
    const double width = std::max(this->width(), kSmallestSide);
    const double height = std::max(this->height(), kSmallestSide);
    const QString text = displayText();
    int letters = text.size() > kLongTextForFitting ? kSmallestLetters : kLargestLetters;
    const auto needed = [&] { return measuredText(text, fontOf(letters), width - 2 * kMargin).height() + 2 * kMargin; };
    double need = needed();
    while (need > height && letters > kSmallestLetters) {
        --letters;
        need = needed();
    }
    if (m_letters != letters) {
        m_letters = letters;
        Q_EMIT displayFontChanged();
        updateIsLegible();
        refreshEditor();
    }
    insistOnSize({width, std::min(std::max(height, std::ceil(need)), kTallest)});
}

void StickyNoteBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    LinkedBody::geometryChange(newGeometry, oldGeometry);
    if (isComponentComplete()) {
        fit();
    }
}

LinkedBody::Display StickyNoteBlockContent::display() const {
    return {.text = displayText(),
            .font = displayFont(),
            .color = Theme::shared().noteInk(),
            .linkColor = Theme::shared().noteLink(),
            .isStruck = block()->isStrikethrough(),
            .position = {kMargin, kMargin},
            .width = std::max(1.0, width() - 2 * kMargin),
            .room = 0};
}

void StickyNoteBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    editor.setPosition({kMargin, kMargin});
    editor.setSize({std::max(0.0, width() - 2 * kMargin), std::max(0.0, height() - 2 * kMargin)});
    editor.setFont(displayFont());
    editor.setTextColor(Theme::shared().noteInk());
    editor.setIsStruck(block()->isStrikethrough());
    static_cast<FieldEditor &>(editor).setFieldName(tr("Note"));
}

} // namespace tallowby
