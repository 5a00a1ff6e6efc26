#pragma once

#include "blocks/link/LinkedBody.h"

#include <QColor>
#include <QFont>

namespace tallowby {

/// The body of a text block: the text on the bare canvas, in a hand's face, and its editor while it is edited. A text
/// is as large as its lines, until a person makes it narrower than one of them: from then on it has that width, its
/// lines wrap, and its height follows.
class TextBlockContent : public tallowby::LinkedBody {
    Q_OBJECT
    QML_ELEMENT
    /// The size of the text as it is laid out at rest.
    Q_PROPERTY(QSizeF displaySize READ displaySize WRITE setDisplaySize NOTIFY displaySizeChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY displayTextChanged)
    /// The text as it is shown at rest: an enormous one only begins.
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)
    /// The room in which lines are broken; 0 while every line has its own width.
    Q_PROPERTY(qreal wrapWidth READ wrapWidth NOTIFY wrapWidthChanged)
    /// True when the user has set a width; long lines then wrap at it, between words.
    Q_PROPERTY(bool hasGivenWidth READ hasGivenWidth NOTIFY wrapWidthChanged)
    Q_PROPERTY(QFont displayFont READ displayFont NOTIFY displayFontChanged)
    Q_PROPERTY(QColor textColor READ textColor NOTIFY textColorChanged)

public:
    static constexpr QSizeF kSmallestSize{100, 24};
    /// In characters.
    static constexpr qsizetype kMaxDisplay = 20'000;

    using LinkedBody::LinkedBody;

    [[nodiscard]] QSizeF displaySize() const { return m_displaySize; }
    void setDisplaySize(QSizeF size);
    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] QString displayText() const;
    [[nodiscard]] qreal wrapWidth() const;
    [[nodiscard]] bool hasGivenWidth() const;
    [[nodiscard]] QFont displayFont() const;
    [[nodiscard]] QColor textColor() const;

    /// The face of text blocks in a size and style.
    [[nodiscard]] static QFont styledDisplayFont(double size, bool isBold, bool isItalic);

    void setIsEditing(bool isEditing) override;

Q_SIGNALS:
    void displaySizeChanged();
    void displayTextChanged();
    void wrapWidthChanged();
    void displayFontChanged();
    void textColorChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] double textSize() const override;
    [[nodiscard]] QLatin1StringView editorFile() const override { return QLatin1StringView("TextEditor"); }
    [[nodiscard]] Display display() const override;
    void dressEditor(AutoExpandingTextEditor &editor) override;
    void editorOpened(AutoExpandingTextEditor &editor) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void measure();
    void followContent();
    void updateGivenWidth();
    void followPull(double widthBefore);
    void endPull();

    QSizeF m_displaySize;
    /// What the text takes up, and its longest line, while every line has its own width.
    QSizeF m_ownSize;
    double m_lineWidth = 0;
    /// The width that the text had by itself before it was given one, as the payload keeps it; 0 when it never was. At
    /// that width it counts as one that was not: undo brings back no more than the frame.
    double m_ownWidth = 0;
    /// The width that display and editor wrap at now; 0 while they do not.
    double m_givenWidth = 0;
    /// While a person pulls at the block.
    bool m_isPulled = false;
    QMetaObject::Connection m_pullEnd;
};

} // namespace tallowby
