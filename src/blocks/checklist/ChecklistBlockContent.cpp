#include "blocks/checklist/ChecklistBlockContent.h"

#include "blocks/text/FieldEditor.h"
#include "blocks/text/TextMeasure.h"
#include "platform/theme/Theme.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

const QString kItemsKey = QStringLiteral("items");
const QString kTitleKey = QStringLiteral("title");
/// In characters. A longer text shows its beginning while it is not edited.
constexpr qsizetype kMaxShownField = 5'000;
/// A longer text is not opened: laying it out takes seconds.
constexpr qsizetype kMaxOpenedField = 20'000;
constexpr qsizetype kMaxOverview = 2'000;
/// More lines than this stay one text.
constexpr qsizetype kMaxPastedLines = 10'000;
constexpr double kSmallestRow = 28;
constexpr double kSmallestHeader = 36;
constexpr double kHeaderPadding = 10;
constexpr double kProgressWidth = 64;
constexpr double kExtentHeight = 22;

QString shown(const QString &text) {
    return text.size() > kMaxShownField ? text.left(kMaxShownField) + u'\u2026' : text;
}

/// Without the marks that other programs put before the items of a list.
QString withoutMark(const QString &line) {
    const QString text = line.trimmed();
    for (const QLatin1StringView mark :
         {QLatin1StringView("- [ ] "), QLatin1StringView("- [x] "), QLatin1StringView("- "), QLatin1StringView("* ")}) {
        if (text.startsWith(mark)) {
            return text.sliced(mark.size()).trimmed();
        }
    }
    return text.startsWith(u"\u2022") ? text.sliced(1).trimmed() : text;
}

} // namespace

ChecklistBlockContent::ChecklistBlockContent(QQuickItem *parent)
    : FieldsBody(parent)
    , m_rows({"item", "words", "isDone", "rowTop", "rowHeight", "isEdited", "isHovered"}) {}

void ChecklistBlockContent::reload() {
    m_list = Checklist(*block());
    const auto title = block()->contentField(kTitleKey);
    const QString *text = title ? std::get_if<QString>(&title->value()) : nullptr;
    m_title = text ? *text : block()->checklistTitle();
    m_field = std::min(m_field, m_list.count() - 1);
    m_dragged = kNone;
    if (isEditing() && !canOpen(m_field)) {
        viewModel().endEditing();
    }
}

void ChecklistBlockContent::writeItems() {
    write(kItemsKey, m_list.toPayload());
    layOut();
}

QFont ChecklistBlockContent::itemFont() const {
    QFont font(Theme::shared().uiFamily());
    font.setPixelSize(Theme::shared().bodySize());
    return font;
}

QFont ChecklistBlockContent::titleFont() const {
    QFont font(Theme::shared().uiFamily());
    font.setPixelSize(11);
    font.setWeight(QFont::DemiBold);
    return font;
}

QString ChecklistBlockContent::progress() const {
    return m_list.count() == 0 ? QString() : tr("%L1 of %L2").arg(m_list.doneCount()).arg(m_list.count());
}

QString ChecklistBlockContent::overview() const {
    QString text = shown(m_title);
    for (int item = 0; item < m_list.count() && text.size() < kMaxOverview; ++item) {
        text += u'\n' + m_list.text(item).left(kMaxOverview);
    }
    return text;
}

QString ChecklistBlockContent::extent() const {
    const int count = int(m_shown.size());
    return count == m_list.count() ? QString()
                                   : tr("%L1 to %L2 of %L3").arg(m_first + 1).arg(m_first + count).arg(m_list.count());
}

// Layout.

double ChecklistBlockContent::textWidth() const {
    return std::max(width(), kNarrowest) - kTextLeft - kTextRight;
}

/// The editor shows all of a text whose display only begins.
double ChecklistBlockContent::textHeight(int field, const QFont &font, double width) const {
    const QString &text = textOf(field);
    const bool isInEditor = editor() && field == m_field && text.size() > kMaxShownField;
    return isInEditor ? editor()->usedSize().height() : measuredText(shown(text), font, width).height();
}

double ChecklistBlockContent::rowHeight(int item) const {
    return std::max(kSmallestRow, std::ceil(textHeight(item, itemFont(), textWidth())) + 2 * kRowPadding);
}

/// The first row of the last page, which is full.
int ChecklistBlockContent::lastFirst() const {
    double room = kTallest - kAddHeight - kExtentHeight - m_headerHeight;
    int first = std::max(0, m_list.count() - 1);
    while (first > 0) {
        room -= rowHeight(first);
        if (room < rowHeight(first - 1)) {
            break;
        }
        --first;
    }
    return first;
}

void ChecklistBlockContent::layOut() {
    const double titleHeight = textHeight(kTitle, titleFont(), textWidth() - kProgressWidth);
    m_headerHeight = std::max(kSmallestHeader, std::ceil(titleHeight) + 2 * kHeaderPadding);
    m_first = std::clamp(m_first, 0, lastFirst());
    m_shown.clear();
    std::vector<QVariantList> rows;
    double top = m_headerHeight;
    for (int item = m_first; item < m_list.count(); ++item) {
        const double height = rowHeight(item);
        if (top + height > kTallest - kAddHeight - kExtentHeight && item > m_first) {
            break;
        }
        m_shown.push_back({top, height});
        rows.push_back({item, shown(m_list.text(item)), m_list.isDone(item), top, height,
                        isEditing() && m_field == item, isEditing() && m_hovered == item});
        top += height;
    }
    m_addTop = top;
    m_rows.assign(std::move(rows));
    Q_EMIT listChanged();
    refreshEditor();
    insistOnSize({std::max(width(), kNarrowest), top + kAddHeight + (extent().isEmpty() ? 0 : kExtentHeight)});
}

// The editor.

bool ChecklistBlockContent::canOpen(int field) const {
    return field >= kTitle && field < m_list.count() && textOf(field).size() <= kMaxOpenedField;
}

int ChecklistBlockContent::openableFrom(int field, int step) const {
    for (; field >= kTitle && field < m_list.count(); field += step) {
        if (canOpen(field)) {
            return field;
        }
    }
    return kNone;
}

void ChecklistBlockContent::setIsEditing(bool isEditing) {
    if (isEditing && !this->isEditing()) {
        m_field = kTitle;
        for (int item = 0; item < m_list.count(); ++item) {
            if (canOpen(item)) {
                m_field = item;
            }
            if (m_list.text(item).isEmpty()) {
                break;
            }
        }
        if (!canOpen(m_field)) {
            m_field = kNone;
            viewModel().endEditing();
            return;
        }
    }
    FieldsBody::setIsEditing(isEditing);
    setAcceptHoverEvents(isEditing);
    m_hovered = kNone;
    m_dragged = kNone;
    unsetCursor();
    layOut();
}

void ChecklistBlockContent::editorOpened(AutoExpandingTextEditor &editor) {
    FieldsBody::editorOpened(editor);
    connect(this, &EditedBody::isDisplayShownChanged, &editor, [this] { layOut(); });
    connect(&editor, &AutoExpandingTextEditor::usedSizeChanged, this, [this] {
        if (m_field != kNone && textOf(m_field).size() > kMaxShownField) {
            layOut();
        }
    });
}

void ChecklistBlockContent::dressEditor(AutoExpandingTextEditor &editor) {
    const int row = m_field - m_first;
    const bool isShown = m_field == kTitle || (row >= 0 && row < int(m_shown.size()));
    editor.setVisible(isShown && m_field != kNone);
    const bool isTitle = m_field == kTitle;
    editor.setFont(isTitle ? titleFont() : itemFont());
    editor.setTextColor(m_field >= 0 && m_list.isDone(m_field) ? Theme::shared().inkSoft() : Theme::shared().ink());
    field()->setFieldName(isTitle ? tr("Title") : tr("Item"));
    if (isTitle) {
        editor.setPosition({kTextLeft, kHeaderPadding + (kSmallestHeader - 2 * kHeaderPadding - 14) / 2});
        editor.setSize({textWidth() - kProgressWidth, m_headerHeight - 2 * kHeaderPadding});
    } else if (isShown && m_field >= 0) {
        const Row &place = m_shown[std::size_t(row)];
        editor.setPosition({kTextLeft, place.top + kRowPadding});
        editor.setSize({textWidth(), place.height - 2 * kRowPadding});
    }
}

QString ChecklistBlockContent::editedText() const {
    return m_field == kNone ? QString() : textOf(m_field);
}

void ChecklistBlockContent::takeText(const QString &text) {
    if (m_field == kNone || text == editedText()) {
        return;
    }
    if (m_field == kTitle) {
        m_title = text;
        write(kTitleKey, text);
        layOut();
    } else {
        m_list.setText(m_field, text);
        writeItems();
    }
}

void ChecklistBlockContent::edit(int field, int caret) {
    if (!editor() || !canOpen(field)) {
        return;
    }
    if (field != m_field) {
        leaveField();
    }
    const auto leave = [this, field] {
        m_field = field;
        if (field >= 0 && field < m_first) {
            m_first = field;
        }
        layOut();
        while (field >= m_first + int(m_shown.size()) && m_first < field) {
            ++m_first;
            layOut();
        }
    };
    moveEditor(leave, caret);
}

/// An editor of nothing would swallow what is typed.
void ChecklistBlockContent::editOrEnd(int field) {
    if (isEditing() && !canOpen(field)) {
        viewModel().endEditing();
    } else {
        edit(field, -1);
    }
}

bool ChecklistBlockContent::handleKey(const QKeyEvent &event) {
    if (event.matches(QKeySequence::Paste)) {
        return m_field >= 0 && pasteLines();
    }
    const bool isAltHeld = event.modifiers().testFlag(Qt::AltModifier);
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event.modifiers().testFlag(Qt::ShiftModifier)) {
            return false;
        }
        breakItem();
        return true;
    case Qt::Key_Backspace:
        return removeIfEmpty();
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const int step = event.key() == Qt::Key_Up ? -1 : 1;
        if (isAltHeld && m_field >= 0) {
            moveItem(m_field, std::clamp(m_field + step, 0, m_list.count() - 1));
            return true;
        }
        return !event.modifiers().testFlag(Qt::ShiftModifier) && walkByLine(step);
    }
    case Qt::Key_Tab:
        edit(openableFrom(m_field + 1, 1), -1);
        return true;
    case Qt::Key_Backtab:
        edit(openableFrom(m_field - 1, -1), -1);
        return true;
    default:
        return false;
    }
}

/// Within a text of several lines the caret goes from line to line first.
bool ChecklistBlockContent::walkByLine(int step) {
    const bool isAtEdge = isCaretInLastLine(step);
    if (isAtEdge) {
        edit(openableFrom(m_field + step, step), -1);
    }
    return isAtEdge;
}

bool ChecklistBlockContent::removeIfEmpty() {
    if (m_field < 0 || !m_list.text(m_field).isEmpty()) {
        return false;
    }
    leaveField();
    const int removed = m_field;
    m_list.remove(removed);
    m_field = openableFrom(removed - 1, -1);
    writeItems();
    editOrEnd(m_field);
    return true;
}

/// What is behind the caret goes to the new item.
void ChecklistBlockContent::breakItem() {
    if (m_field == kTitle) {
        if (m_list.count() == 0) {
            m_list.insert(0, {});
            writeItems();
        }
        edit(openableFrom(0, 1), -1);
        return;
    }
    const QString text = field()->text();
    const int caret = field()->caret();
    m_list.setText(m_field, text.left(caret));
    m_list.insert(m_field + 1, text.sliced(caret));
    field()->setText(m_list.text(m_field));
    writeItems();
    edit(m_field + 1, 0);
}

bool ChecklistBlockContent::pasteLines() {
    QStringList lines;
    for (const QString &line : QGuiApplication::clipboard()->text().split(u'\n')) {
        if (const QString text = withoutMark(line); !text.isEmpty()) {
            lines << text;
        }
    }
    if (lines.size() < 2 || lines.size() > kMaxPastedLines) {
        return false;
    }
    // The first line goes where the caret is, as any text; what was behind the caret stays behind the last one.
    const QString text = field()->text();
    const int start = inputItem()->property("selectionStart").toInt();
    const int end = inputItem()->property("selectionEnd").toInt();
    const int caret = int(lines.back().size());
    lines.front().prepend(text.left(start));
    lines.back() += text.sliced(end);
    m_list.setText(m_field, lines.front());
    for (int i = 1; i < int(lines.size()); ++i) {
        m_list.insert(m_field + i, lines[i]);
    }
    field()->setText(lines.front());
    writeItems();
    edit(m_field + int(lines.size()) - 1, caret);
    return true;
}

void ChecklistBlockContent::moveItem(int from, int to) {
    if (from == to) {
        return;
    }
    // A grip that is held has another row now.
    m_dragged = kNone;
    m_list.move(from, to);
    if (m_field == from) {
        m_field = to;
    } else if (m_field >= 0) {
        m_field += (from < m_field && m_field <= to) ? -1 : (to <= m_field && m_field < from) ? 1 : 0;
    }
    writeItems();
}

// Controls.

void ChecklistBlockContent::toggle(int item) {
    m_list.setIsDone(item, !m_list.isDone(item));
    writeItems();
}

void ChecklistBlockContent::removeItem(int item) {
    leaveField();
    m_list.remove(item);
    if (m_field == item) {
        const int next = openableFrom(item, 1);
        m_field = next != kNone ? next : openableFrom(item - 1, -1);
    } else if (m_field > item) {
        --m_field;
    }
    writeItems();
    editOrEnd(m_field);
}

void ChecklistBlockContent::addItem() {
    leaveField();
    m_list.insert(m_list.count(), {});
    writeItems();
    const auto &blocks = viewModel().visibleBlocks();
    const auto own = std::ranges::find(blocks, block(), &BlockPtr::get);
    if (!isEditing() && own != blocks.end()) {
        viewModel().beginEditing(*own);
    }
    edit(m_list.count() - 1, 0);
}

} // namespace tallowby
