#pragma once

#include "blocks/link/TextLinks.h"
#include "blocks/text/EditedBody.h"

#include <QFont>

namespace tallowby {

class LinkHighlighter;

/// A body with a text whose links are seen and opened: at rest and while it is edited they are underlined, and a click
/// with Ctrl held opens one, which leads back to the desktop. A text with links is shown by an item of its own, in the
/// place of the plain one.
class LinkedBody : public tallowby::EditedBody {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A base of bodies")
    /// Whether the text at rest is shown here, and not by the plain item.
    Q_PROPERTY(bool showsLinks READ showsLinks NOTIFY showsLinksChanged)

public:
    using EditedBody::EditedBody;

    [[nodiscard]] bool showsLinks() const { return m_shown != nullptr; }

    [[nodiscard]] bool click(QPointF point, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] std::optional<Qt::CursorShape> cursorAt(QPointF point,
                                                          Qt::KeyboardModifiers modifiers) const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void showsLinksChanged();

protected:
    /// The text at rest and its place in the body.
    struct Display {
        QString text;
        QFont font;
        QColor color;
        QColor linkColor;
        bool isStruck = false;
        QPointF position;
        /// 0 leaves every line its own width.
        double width = 0;
        /// From the position to the right edge, for lines of their own width.
        double room = 0;
        bool breaksWords = false;
    };
    [[nodiscard]] virtual Display display() const = 0;
    /// Called when anything about the display has changed.
    void refreshLinks();

    void componentComplete() override;
    void editorOpened(AutoExpandingTextEditor &editor) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void show(const Display &display);
    void hide();
    /// The item that shows the text now, if its links are seen.
    [[nodiscard]] QQuickItem *textItem() const;
    [[nodiscard]] std::optional<QUrl> linkAt(QPointF point) const;

    /// A `TextEdit` that nothing is typed into; owned as a child.
    QQuickItem *m_shown = nullptr;
    /// Owned by the documents of the text at rest and of the editor.
    LinkHighlighter *m_shownLinks = nullptr;
    LinkHighlighter *m_editedLinks = nullptr;
};

} // namespace tallowby
