#include "blocks/link/LinkHighlighter.h"

#include "blocks/link/TextLinks.h"

namespace tallowby {

void LinkHighlighter::setColor(const QColor &color) {
    if (m_color != color) {
        m_color = color;
        rehighlight();
    }
}

void LinkHighlighter::highlightBlock(const QString &text) {
    for (const TextLink &link : linksIn(text)) {
        QTextCharFormat format;
        format.setForeground(m_color);
        format.setFontUnderline(true);
        setFormat(int(link.start), int(link.length), format);
    }
}

} // namespace tallowby
