#include "blocks/toolbar/NoteFormatToolbar.h"

#include "canvas/overlay/palette/ToolPaletteView.h"
#include "model/AnyCodable.h"

#include <algorithm>

namespace tallowby {

namespace {

/// As the note shows it: what the payload keeps, else the field, else the first paper.
qsizetype paperOf(const Block &block) {
    const QStringList names = Theme::notePaperNames();
    const auto kept = block.contentField(QStringLiteral("stickyColor"));
    const QString *name = kept ? std::get_if<QString>(&kept->value()) : nullptr;
    const qsizetype place = name ? names.indexOf(*name) : -1;
    return place >= 0 ? place : std::max<qsizetype>(0, names.indexOf(block.stickyColor()));
}

} // namespace

NoteFormatToolbar::NoteFormatToolbar(QQuickItem *parent)
    : BlockToolbar(parent) {
    connect(&Theme::shared(), &Theme::changed, this, &NoteFormatToolbar::papersChanged);
}

QVariantList NoteFormatToolbar::papers() {
    const QStringList names = Theme::notePaperNames();
    const QStringList shownNames{tr("Yellow"), tr("Peach"), tr("Rose"), tr("Lilac"), tr("Sky"), tr("Mint")};
    QVariantList list;
    for (qsizetype i = 0; i < names.size(); ++i) {
        list << QVariant::fromValue(PencilColor{names[i], Theme::shared().notePaper(names[i]), shownNames.value(i)});
    }
    return list;
}

int NoteFormatToolbar::paper() const {
    return int(shared(paperOf).value_or(-1));
}

void NoteFormatToolbar::choosePaper(int place) {
    const QString name = Theme::notePaperNames().at(place);
    for (const BlockPtr &block : blocks()) {
        viewModel().setNotePaper(*block, name);
    }
}

} // namespace tallowby
