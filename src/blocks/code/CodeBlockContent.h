#pragma once

#include "blocks/code/CodeLanguage.h"
#include "blocks/text/EditedBody.h"

#include <QColor>
#include <QFont>
#include <QVariantList>

namespace tallowby {

class CodeHighlighter;

/// The body of a code block: a dark panel with a header, line numbers and coloured text. It grows with its text up to a
/// bound and scrolls from there on.
class CodeBlockContent : public tallowby::EditedBody {
    Q_OBJECT
    QML_ELEMENT
    /// In which display and editor lie, cut at its edges.
    Q_PROPERTY(QQuickItem *viewport MEMBER m_viewport REQUIRED)
    /// The `TextEdit` that shows the text at rest.
    Q_PROPERTY(QQuickItem *display MEMBER m_display REQUIRED)
    Q_PROPERTY(QSizeF displaySize READ displaySize WRITE setDisplaySize NOTIFY layoutChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY displayTextChanged)
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)
    Q_PROPERTY(qreal wrapWidth READ wrapWidth NOTIFY displayTextChanged)
    Q_PROPERTY(QFont codeFont READ codeFont CONSTANT)
    Q_PROPERTY(QPointF scrollOffset READ scrollOffset NOTIFY layoutChanged)
    Q_PROPERTY(qreal gutterWidth READ gutterWidth NOTIFY layoutChanged)
    /// The numbers of the lines in view, and where the first of them stands.
    Q_PROPERTY(QString lineNumbers READ lineNumbers NOTIFY layoutChanged)
    Q_PROPERTY(qreal lineNumbersTop READ lineNumbersTop NOTIFY layoutChanged)
    Q_PROPERTY(qreal lineHeight READ lineHeight NOTIFY layoutChanged)
    Q_PROPERTY(QString language READ language NOTIFY languageChanged)
    Q_PROPERTY(QString languageName READ languageName NOTIFY languageChanged)
    Q_PROPERTY(QStringList languages READ languages CONSTANT)
    Q_PROPERTY(QVariantList windowDots READ windowDots CONSTANT)
    Q_PROPERTY(bool isMenuOpen READ isMenuOpen NOTIFY isMenuOpenChanged)
    /// The text was copied, and neither it nor the selection has changed since.
    Q_PROPERTY(bool isCopied READ isCopied NOTIFY isCopiedChanged)
    Q_PROPERTY(qreal chromeScale READ chromeScale NOTIFY chromeScaleChanged)

public:
    static constexpr double kHeaderHeight = 30;
    static constexpr double kPadding = 10;
    static constexpr QSizeF kSmallest{240, 76};
    static constexpr QSizeF kLargest{760, 560};

    using EditedBody::EditedBody;

    [[nodiscard]] QSizeF displaySize() const { return m_displaySize; }
    void setDisplaySize(QSizeF size);
    [[nodiscard]] bool isEmpty() const { return block()->rawTextOrEmpty().isEmpty(); }
    [[nodiscard]] QString displayText() const;
    [[nodiscard]] qreal wrapWidth() const;
    [[nodiscard]] QFont codeFont() const;
    [[nodiscard]] QPointF scrollOffset() const { return m_scroll; }
    [[nodiscard]] double gutterWidth() const;
    [[nodiscard]] QString lineNumbers() const;
    [[nodiscard]] double lineNumbersTop() const;
    [[nodiscard]] double lineHeight() const;
    [[nodiscard]] QString language() const { return m_language; }
    [[nodiscard]] QString languageName() const { return CodeLanguage::named(m_language).name; }
    [[nodiscard]] QStringList languages() const;
    [[nodiscard]] QVariantList windowDots() const;
    [[nodiscard]] bool isMenuOpen() const { return m_isMenuOpen; }
    [[nodiscard]] bool isCopied() const { return m_isCopied; }
    [[nodiscard]] double chromeScale() const { return 1 / zoom(); }

    Q_INVOKABLE QString nameOf(const QString &language) const { return CodeLanguage::named(language).name; }
    Q_INVOKABLE void chooseLanguage(const QString &language);
    Q_INVOKABLE void copy();
    Q_INVOKABLE void toggleMenu();

    void setIsEditing(bool isEditing) override;
    [[nodiscard]] bool click(QPointF point, Qt::KeyboardModifiers modifiers) override;
    void placeCaret(QPointF point) override;
    void setZoom(double zoom) override;

Q_SIGNALS:
    void displayTextChanged();
    void layoutChanged();
    void languageChanged();
    void isMenuOpenChanged();
    void isCopiedChanged();
    void chromeScaleChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] QLatin1StringView editorFile() const override { return QLatin1StringView("CodeTextEditor"); }
    void dressEditor(AutoExpandingTextEditor &editor) override;
    void editorOpened(AutoExpandingTextEditor &editor) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private Q_SLOTS:
    void followCaret();

private:
    [[nodiscard]] QSizeF contentSize() const;
    [[nodiscard]] QSizeF viewportSize() const;
    [[nodiscard]] int lineCount() const;
    void followLanguage();
    void layOut();
    void scrollTo(QPointF offset);
    void setIsMenuOpen(bool isOpen);
    void setIsCopied(bool isCopied);

    QQuickItem *m_viewport = nullptr;
    QQuickItem *m_display = nullptr;
    CodeHighlighter *m_displayHighlighter = nullptr;
    /// Only while the body is edited.
    CodeHighlighter *m_editorHighlighter = nullptr;
    QSizeF m_displaySize;
    QPointF m_scroll;
    QString m_language;
    bool m_isMenuOpen = false;
    bool m_isCopied = false;
};

} // namespace tallowby
