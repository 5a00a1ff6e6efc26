#pragma once

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickItem>

class QTextDocument;

namespace tallowby {

/// A growing editor for plain text. Return and Escape end the editing, Shift and Return break the line; the text is
/// with its owner at every moment, so that neither discards anything. The QML file that is made on it composes the
/// looks around a `TextEdit`, which it drives through that item's public properties.
class AutoExpandingTextEditor : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The `TextEdit` inside.
    Q_PROPERTY(QQuickItem *textEdit READ textEdit WRITE setTextEdit NOTIFY textEditChanged REQUIRED)
    /// The owner's text as the editor has it, with every line break as one character. While an input method composes, a
    /// new value does not replace what is in the editor.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor NOTIFY textColorChanged)
    Q_PROPERTY(bool isStruck READ isStruck WRITE setIsStruck NOTIFY isStruckChanged)
    /// The size of the laid-out text.
    Q_PROPERTY(QSizeF usedSize MEMBER m_usedSize NOTIFY usedSizeChanged)
    /// What an input method is composing and has not put into the text yet.
    Q_PROPERTY(QString preedit READ preedit WRITE setPreedit NOTIFY preeditChanged)
    /// No text and nothing being composed.
    Q_PROPERTY(bool isBlank READ isBlank NOTIFY isBlankChanged)
    /// The width at which a text with an extremely long line is broken; 0 while every line has its own width.
    Q_PROPERTY(qreal wrapWidth READ wrapWidth NOTIFY wrapWidthChanged)

public:
    /// Between the edge and the text, in points.
    static constexpr double kHorizontalInset = 4;
    static constexpr double kVerticalInset = 2;
    static constexpr QSizeF kSmallestSize{80, 20};

    using QQuickItem::QQuickItem;

    [[nodiscard]] QQuickItem *textEdit() const { return m_textEdit; }
    void setTextEdit(QQuickItem *textEdit);
    [[nodiscard]] const QString &text() const { return m_text; }
    void setText(const QString &text);
    /// Clears the undo history, before the editor goes on to the text of another field.
    void forgetHistory();
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    [[nodiscard]] QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor &color);
    [[nodiscard]] bool isStruck() const { return m_isStruck; }
    void setIsStruck(bool isStruck);
    [[nodiscard]] QSizeF usedSize() const { return m_usedSize; }
    [[nodiscard]] const QString &preedit() const { return m_preedit; }
    void setPreedit(const QString &preedit);
    [[nodiscard]] bool isBlank() const { return m_isBlank; }
    [[nodiscard]] qreal wrapWidth() const { return m_wrapWidth; }

    /// Puts the caret where the point is, in the editor's coordinates.
    void placeCaret(QPointF point);
    /// In characters from the beginning.
    [[nodiscard]] int caret() const;
    void setCaret(int position);
    [[nodiscard]] bool hasSelection() const;
    void selectAll();

    /// What the canvas lays out around for a text that takes up `used`.
    [[nodiscard]] static QSizeF intrinsicSize(QSizeF used);
    /// As `wrapWidth`, for any text.
    [[nodiscard]] static qreal wrapWidthFor(QStringView text);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void textEditChanged();
    void textChanged();
    /// The user has changed the text.
    void edited();
    void fontChanged();
    void textColorChanged();
    void isStruckChanged();
    void usedSizeChanged();
    void preeditChanged();
    void isBlankChanged();
    void wrapWidthChanged();
    /// The user ends editing from the keyboard.
    void committed();

protected:
    void componentComplete() override;
    /// A key before the `TextEdit` sees it; true keeps it from there.
    [[nodiscard]] virtual bool handleKey(const QKeyEvent &event);
    [[nodiscard]] QTextDocument *document() const { return m_document; }

private:
    [[nodiscard]] bool pasteEnormousText();
    void showText();
    void takeEdit();
    /// An edit, which the owner has not seen yet.
    void take(const QString &text);
    void adopt(const QString &text);
    [[nodiscard]] QString documentText() const;
    void updateIsBlank();

    QPointer<QQuickItem> m_textEdit;
    QTextDocument *m_document = nullptr;
    QString m_text;
    /// Before the document made one of its own of it, which may differ in its line breaks.
    QString m_ownersText;
    bool m_isShowing = false;
    QString m_preedit;
    QFont m_font;
    QColor m_textColor;
    bool m_isStruck = false;
    QSizeF m_usedSize;
    bool m_isBlank = true;
    qreal m_wrapWidth = 0;
};

} // namespace tallowby
