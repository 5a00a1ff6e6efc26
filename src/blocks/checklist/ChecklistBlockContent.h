#pragma once

#include "blocks/ShownRowsModel.h"
#include "blocks/checklist/Checklist.h"
#include "blocks/text/FieldsBody.h"

#include <QFont>

#include <vector>

namespace tallowby {

/// The body of a checklist: a header with title and progress, a row for each item, and a line that adds one. One editor
/// goes from field to field. The block is as high as its rows, up to a bound; longer lists scroll by rows.
class ChecklistBlockContent : public tallowby::FieldsBody {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString title READ title NOTIFY listChanged)
    /// How many items are done of how many; empty without items.
    Q_PROPERTY(QString progress READ progress NOTIFY listChanged)
    /// The whole list as text, for when it is too small to be read.
    Q_PROPERTY(QString overview READ overview NOTIFY listChanged)
    Q_PROPERTY(bool isTitleEdited READ isTitleEdited NOTIFY listChanged)
    Q_PROPERTY(qreal headerHeight READ headerHeight NOTIFY listChanged)
    Q_PROPERTY(qreal addTop READ addTop NOTIFY listChanged)
    /// The right edge of the words of the line that adds an item.
    Q_PROPERTY(qreal addRight MEMBER m_addRight)
    /// Which rows are seen of a list that scrolls; empty when all are.
    Q_PROPERTY(QString extent READ extent NOTIFY listChanged)
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
    Q_PROPERTY(QFont itemFont READ itemFont CONSTANT)
    Q_PROPERTY(QFont titleFont READ titleFont CONSTANT)

public:
    static constexpr double kNarrowest = 200;
    static constexpr double kTallest = 1'200;
    static constexpr double kTextLeft = 42;
    static constexpr double kTextRight = 34;
    static constexpr double kRowPadding = 6;
    static constexpr double kAddHeight = 34;
    /// Around the plus and the words of the line that adds an item, where a click still means them.
    static constexpr double kAddMargin = 8;

    explicit ChecklistBlockContent(QQuickItem *parent = nullptr);

    [[nodiscard]] const QString &title() const { return m_title; }
    [[nodiscard]] QString progress() const;
    [[nodiscard]] QString overview() const;
    [[nodiscard]] QString extent() const;
    [[nodiscard]] bool isTitleEdited() const { return isEditing() && m_field == kTitle; }
    [[nodiscard]] double headerHeight() const { return m_headerHeight; }
    [[nodiscard]] double addTop() const { return m_addTop; }
    [[nodiscard]] QAbstractItemModel *rows() { return &m_rows; }
    [[nodiscard]] QFont itemFont() const;
    [[nodiscard]] QFont titleFont() const;

    Q_INVOKABLE void toggle(int item);
    Q_INVOKABLE void removeItem(int item);
    Q_INVOKABLE void addItem();

    void setIsEditing(bool isEditing) override;
    [[nodiscard]] bool click(QPointF point, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] std::optional<Qt::CursorShape> cursorAt(QPointF point,
                                                          Qt::KeyboardModifiers modifiers) const override;
    /// The line that adds an item shows that it is hovered.
    [[nodiscard]] bool takesPointerAtRest() const override { return true; }
    void placeCaret(QPointF point) override;

Q_SIGNALS:
    void listChanged();

protected:
    void reload() override;
    void layOut() override;
    [[nodiscard]] bool handleKey(const QKeyEvent &event) override;
    [[nodiscard]] bool isScrolling() const override { return !extent().isEmpty(); }
    void dressEditor(AutoExpandingTextEditor &editor) override;
    [[nodiscard]] QString editedText() const override;
    void takeText(const QString &text) override;
    void editorOpened(AutoExpandingTextEditor &editor) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override { m_dragged = kNone; }
    void hoverEnterEvent(QHoverEvent *event) override { hoverMoveEvent(event); }
    void hoverMoveEvent(QHoverEvent *event) override;
    void hoverLeaveEvent(QHoverEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    /// Fields are numbered by item.
    static constexpr int kTitle = -1;
    static constexpr int kNone = -2;
    enum class Zone { title, grip, box, text, removal, addition, nothing };
    struct Hit {
        Zone zone = Zone::nothing;
        int item = kNone;
    };
    struct Row {
        double top;
        double height;
    };

    [[nodiscard]] Hit hit(QPointF point) const;
    [[nodiscard]] static Qt::CursorShape cursorOf(Zone zone);
    [[nodiscard]] double textWidth() const;
    [[nodiscard]] double rowHeight(int item) const;
    [[nodiscard]] double textHeight(int field, const QFont &font, double width) const;
    [[nodiscard]] int lastFirst() const;
    [[nodiscard]] const QString &textOf(int field) const { return field == kTitle ? m_title : m_list.text(field); }
    /// True when the field is short enough to open. A field that is already open takes text of any length.
    [[nodiscard]] bool canOpen(int field) const;
    /// The next field that can be opened, from `field` on; `kNone` at the end.
    [[nodiscard]] int openableFrom(int field, int step) const;
    [[nodiscard]] bool walkByLine(int step);
    [[nodiscard]] bool removeIfEmpty();
    [[nodiscard]] bool pasteLines();
    void breakItem();
    void moveItem(int from, int to);
    void followPull(QPointF point);
    void edit(int field, int caret);
    void editOrEnd(int field);
    void writeItems();
    void setHovered(int item);

    Checklist m_list;
    QString m_title;
    int m_field = kNone;
    int m_hovered = kNone;
    /// The row that is dragged by its grip, in a list that had so many items then.
    int m_dragged = kNone;
    int m_draggedOf = 0;
    int m_first = 0;
    std::vector<Row> m_shown;
    double m_headerHeight = 0;
    double m_addTop = 0;
    double m_addRight = 0;
    ShownRowsModel m_rows;
};

} // namespace tallowby
