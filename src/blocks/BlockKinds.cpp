#include "blocks/BlockKinds.h"

#include <QCoreApplication>

namespace tallowby {

namespace {

struct Names {
    Q_DECLARE_TR_FUNCTIONS(tallowby::BlockKinds)
};

QUrl bodyFile(QLatin1StringView type) {
    return QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/") + type + QStringLiteral(".qml"));
}

/// A kind that is shown as a plain card.
BlockKind plain(BlockType type, const QString &name, const QString &symbol) {
    return {.type = type,
            .name = name,
            .symbol = symbol,
            .body = bodyFile(QLatin1StringView("PlainBlock")),
            .isEditable = false,
            .accessibleRole = QAccessible::Grouping};
}

} // namespace

const BlockKindRegistry &blockKinds() {
    static const BlockKindRegistry registry({
        {.type = BlockType::text,
         .name = Names::tr("Text"),
         .symbol = QStringLiteral("textformat"),
         .body = bodyFile(QLatin1StringView("TextBlock")),
         .isEditable = true,
         .accessibleRole = QAccessible::StaticText},
        {.type = BlockType::divider,
         .name = Names::tr("Divider"),
         .symbol = QStringLiteral("minus"),
         .body = bodyFile(QLatin1StringView("DividerBlock")),
         .isEditable = false,
         .accessibleRole = QAccessible::Separator},
        plain(BlockType::table, Names::tr("Table"), QStringLiteral("tablecells")),
        plain(BlockType::automation, Names::tr("Automation"), QStringLiteral("bolt")),
        plain(BlockType::checklist, Names::tr("Checklist"), QStringLiteral("checklist")),
        plain(BlockType::image, Names::tr("Image"), QStringLiteral("photo")),
        plain(BlockType::code, Names::tr("Code"), QStringLiteral("chevron.left.forwardslash.chevron.right")),
        plain(BlockType::stickyNote, Names::tr("Sticky note"), QStringLiteral("note.text")),
        plain(BlockType::shape, Names::tr("Shape"), QStringLiteral("square.on.circle")),
        plain(BlockType::voiceNote, Names::tr("Voice note"), QStringLiteral("mic")),
        plain(BlockType::videoNote, Names::tr("Video note"), QStringLiteral("video")),
        plain(BlockType::sketch, Names::tr("Sketch"), QStringLiteral("scribble")),
        plain(BlockType::icon, Names::tr("Icon"), QStringLiteral("star")),
    });
    return registry;
}

} // namespace tallowby
