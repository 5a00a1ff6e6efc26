#pragma once

#include "blocks/link/LinkedBody.h"

#include <QColor>
#include <QFont>

namespace tallowby {

/// The body of a sticky note: coloured paper and a text that is never cut. The letters get smaller down to a floor as
/// the text gets longer, and from there on the note grows.
class StickyNoteBlockContent : public tallowby::LinkedBody {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor paper READ paper NOTIFY paperChanged)
    Q_PROPERTY(QString paperName READ paperName NOTIFY paperChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY displayTextChanged)
    /// The text as it is shown at rest: an enormous one only begins.
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)
    Q_PROPERTY(QFont displayFont READ displayFont NOTIFY displayFontChanged)

public:
    static constexpr double kSmallestSide = 160;
    static constexpr int kLargestLetters = 16;
    static constexpr int kSmallestLetters = 11;
    /// From the edge of the paper to the text.
    static constexpr double kMargin = 14;

    using LinkedBody::LinkedBody;

    [[nodiscard]] QString paperName() const { return m_paperName; }
    [[nodiscard]] QColor paper() const;
    [[nodiscard]] bool isEmpty() const { return block()->rawTextOrEmpty().isEmpty(); }
    [[nodiscard]] QString displayText() const;
    [[nodiscard]] QFont displayFont() const;

Q_SIGNALS:
    void paperChanged();
    void displayTextChanged();
    void displayFontChanged();

protected:
    void componentComplete() override;
    [[nodiscard]] double textSize() const override { return m_letters; }
    [[nodiscard]] Display display() const override;
    void dressEditor(AutoExpandingTextEditor &editor) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void followContent();
    void fit();
    [[nodiscard]] QFont fontOf(int letters) const;

    QString m_paperName;
    int m_letters = kLargestLetters;
};

} // namespace tallowby
