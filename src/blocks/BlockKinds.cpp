#include "blocks/BlockKinds.h"

#include "blocks/toolbar/KindColors.h"

#include <QCoreApplication>

namespace tallowby {

namespace {

struct Names {
    Q_DECLARE_TR_FUNCTIONS(tallowby::BlockKinds)
};

QUrl qmlFile(QLatin1StringView type) {
    return QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/") + type + QStringLiteral(".qml"));
}

BlockKind withToolbar(BlockKind kind, QLatin1StringView toolbar, const BlockColor *color = nullptr) {
    kind.toolbar = qmlFile(toolbar);
    kind.color = color;
    return kind;
}

/// A kind that is typed into once it is selected.
BlockKind edited(BlockType type, const QString &name, const QString &symbol, QLatin1StringView body,
                 QAccessible::Role role, QColor (Theme::*miniMapColor)() const) {
    return {.type = type,
            .name = name,
            .symbol = symbol,
            .body = qmlFile(body),
            .isEditable = true,
            .accessibleRole = role,
            .miniMapColor = miniMapColor};
}

} // namespace

const BlockKindRegistry &blockKinds() {
    static const BlockKindRegistry registry(
        {
            {.type = BlockType::text,
             .name = Names::tr("Text"),
             .symbol = QStringLiteral("textformat"),
             .body = qmlFile(QLatin1StringView("TextBlock")),
             .isEditable = true,
             .accessibleRole = QAccessible::StaticText,
             .opensAtFirstClick = true,
             .miniMapColor = &Theme::ink,
             .toolbar = qmlFile(QLatin1StringView("TextToolbar")),
             .color = &kindColors::text(),
             .hasTextStyle = true},
            {.type = BlockType::divider,
             .name = Names::tr("Divider"),
             .symbol = QStringLiteral("minus"),
             .body = qmlFile(QLatin1StringView("DividerBlock")),
             .isEditable = false,
             .accessibleRole = QAccessible::Separator,
             .toolbar = qmlFile(QLatin1StringView("DividerToolbar"))},
            {.type = BlockType::shape,
             .name = Names::tr("Shape"),
             .symbol = QStringLiteral("square.on.circle"),
             .body = qmlFile(QLatin1StringView("ShapeBlock")),
             .isEditable = true,
             .accessibleRole = QAccessible::Graphic,
             .toolbar = qmlFile(QLatin1StringView("ShapeToolbar")),
             .color = &kindColors::stroke(),
             .hasTextStyle = true},
            {.type = BlockType::sketch,
             .name = Names::tr("Sketch"),
             .symbol = QStringLiteral("scribble"),
             .body = qmlFile(QLatin1StringView("SketchBlock")),
             .isEditable = false,
             .accessibleRole = QAccessible::Graphic,
             .toolbar = qmlFile(QLatin1StringView("SketchToolbar")),
             .color = &kindColors::strokes()},
            edited(BlockType::table, Names::tr("Table"), QStringLiteral("tablecells"), QLatin1StringView("TableBlock"),
                   QAccessible::Table, &Theme::blue),
            {.type = BlockType::automation,
             .name = Names::tr("Automation"),
             .symbol = QStringLiteral("bolt"),
             .body = qmlFile(QLatin1StringView("AutomationBlock")),
             .isEditable = false,
             .accessibleRole = QAccessible::Grouping},
            edited(BlockType::checklist, Names::tr("Checklist"), QStringLiteral("checklist"),
                   QLatin1StringView("ChecklistBlock"), QAccessible::List, &Theme::green),
            {.type = BlockType::image,
             .name = Names::tr("Image"),
             .symbol = QStringLiteral("photo"),
             .body = qmlFile(QLatin1StringView("ImageBlock")),
             .isEditable = false,
             .accessibleRole = QAccessible::Graphic,
             .miniMapColor = &Theme::purple},
            edited(BlockType::code, Names::tr("Code"), QStringLiteral("chevron.left.forwardslash.chevron.right"),
                   QLatin1StringView("CodeBlock"), QAccessible::Grouping, &Theme::orange),
            withToolbar(edited(BlockType::stickyNote, Names::tr("Sticky note"), QStringLiteral("note.text"),
                               QLatin1StringView("StickyNoteBlock"), QAccessible::Note, &Theme::yellow),
                        QLatin1StringView("NoteToolbar")),
            {.type = BlockType::voiceNote,
             .name = Names::tr("Voice note"),
             .symbol = QStringLiteral("mic"),
             .body = qmlFile(QLatin1StringView("VoiceNoteBlock")),
             .isEditable = false,
             .accessibleRole = QAccessible::Grouping},
            {.type = BlockType::videoNote,
             .name = Names::tr("Video note"),
             .symbol = QStringLiteral("video"),
             .body = qmlFile(QLatin1StringView("VideoNoteBlock")),
             .isEditable = false,
             .accessibleRole = QAccessible::Grouping},
            {.type = BlockType::icon,
             .name = Names::tr("Icon"),
             .symbol = QStringLiteral("star"),
             .body = qmlFile(QLatin1StringView("IconBlock")),
             .isEditable = true,
             .accessibleRole = QAccessible::Graphic,
             .toolbar = qmlFile(QLatin1StringView("IconToolbar")),
             .color = &kindColors::icon()},
        },
        qmlFile(QLatin1StringView("ColorToolbar")));
    return registry;
}

} // namespace tallowby
