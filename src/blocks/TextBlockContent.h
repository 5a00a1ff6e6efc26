#pragma once

#include "blocks/AutoExpandingTextEditor.h"
#include "canvas/BlockBody.h"

#include <QColor>
#include <QFont>

namespace tallowby {

/// The body of a text block: the text on the bare canvas, in a hand's face, and its editor while it is edited. Every
/// edit is written to the block at once.
class TextBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    /// The size of the text as it is laid out at rest.
    Q_PROPERTY(QSizeF displaySize READ displaySize WRITE setDisplaySize NOTIFY displaySizeChanged)
    /// Whether the text at rest is shown, or the placeholder in its place: not below an editor that holds any text.
    Q_PROPERTY(bool isDisplayShown READ isDisplayShown NOTIFY isDisplayShownChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY displayTextChanged)
    /// The text as it is shown at rest: an enormous one only begins.
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)
    /// As that of the editor.
    Q_PROPERTY(qreal wrapWidth READ wrapWidth NOTIFY displayTextChanged)
    Q_PROPERTY(QFont displayFont READ displayFont NOTIFY displayFontChanged)
    Q_PROPERTY(QColor textColor READ textColor NOTIFY textColorChanged)

public:
    static constexpr QSizeF kSmallestSize{100, 24};
    /// In characters.
    static constexpr qsizetype kLongestDisplay = 20'000;

    using BlockBody::BlockBody;

    [[nodiscard]] QSizeF displaySize() const { return m_displaySize; }
    void setDisplaySize(QSizeF size);
    [[nodiscard]] bool isDisplayShown() const { return !m_editor || m_editor->isBlank(); }
    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] QString displayText() const;
    [[nodiscard]] qreal wrapWidth() const;
    [[nodiscard]] QFont displayFont() const;
    [[nodiscard]] QColor textColor() const;

    /// The face of text blocks in a size and style.
    [[nodiscard]] static QFont styledDisplayFont(double size, bool isBold, bool isItalic);

    void setIsEditing(bool isEditing) override;
    [[nodiscard]] QQuickItem *inputItem() const override;
    void placeCaret(QPointF point) override;

Q_SIGNALS:
    void displaySizeChanged();
    void isDisplayShownChanged();
    void displayTextChanged();
    void displayFontChanged();
    void textColorChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] double textSize() const override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void openEditor();
    void closeEditor();
    void dressEditor();
    void measure();

    /// Only while the body is edited; owned as a child.
    AutoExpandingTextEditor *m_editor = nullptr;
    QSizeF m_displaySize;
};

} // namespace tallowby
