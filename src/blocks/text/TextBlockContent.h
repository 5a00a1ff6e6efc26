#pragma once

#include "blocks/link/LinkedBody.h"

#include <QColor>
#include <QFont>

namespace tallowby {

/// The body of a text block: the text on the bare canvas, in a hand's face, and its editor while it is edited.
class TextBlockContent : public tallowby::LinkedBody {
    Q_OBJECT
    QML_ELEMENT
    /// The size of the text as it is laid out at rest.
    Q_PROPERTY(QSizeF displaySize READ displaySize WRITE setDisplaySize NOTIFY displaySizeChanged)
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

    using LinkedBody::LinkedBody;

    [[nodiscard]] QSizeF displaySize() const { return m_displaySize; }
    void setDisplaySize(QSizeF size);
    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] QString displayText() const;
    [[nodiscard]] qreal wrapWidth() const;
    [[nodiscard]] QFont displayFont() const;
    [[nodiscard]] QColor textColor() const;

    /// The face of text blocks in a size and style.
    [[nodiscard]] static QFont styledDisplayFont(double size, bool isBold, bool isItalic);

    void setIsEditing(bool isEditing) override;

Q_SIGNALS:
    void displaySizeChanged();
    void displayTextChanged();
    void displayFontChanged();
    void textColorChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] double textSize() const override;
    [[nodiscard]] QLatin1StringView editorFile() const override { return QLatin1StringView("TextEditor"); }
    [[nodiscard]] Display display() const override;
    void dressEditor(AutoExpandingTextEditor &editor) override;
    void editorOpened(AutoExpandingTextEditor &editor) override;

private:
    void measure();

    QSizeF m_displaySize;
};

} // namespace tallowby
