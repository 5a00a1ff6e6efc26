#pragma once

#include <QColor>
#include <QSyntaxHighlighter>

namespace tallowby {

/// Underlines and colours the links in a document. Owned by the document.
class LinkHighlighter : public QSyntaxHighlighter {
public:
    explicit LinkHighlighter(QTextDocument *document)
        : QSyntaxHighlighter(document) {}

    void setColor(const QColor &color);

protected:
    void highlightBlock(const QString &text) override;

private:
    QColor m_color;
};

} // namespace tallowby
