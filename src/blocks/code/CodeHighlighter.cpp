#include "blocks/code/CodeHighlighter.h"

#include "platform/theme/Theme.h"

namespace tallowby {

namespace {

/// A line of this length was written by a machine, and takes long to take apart.
constexpr qsizetype kLongestLine = 5'000;

QColor colorOf(CodeToken token) {
    switch (token) {
    case CodeToken::comment:
        return Theme::codeComment();
    case CodeToken::text:
        return Theme::codeText();
    case CodeToken::number:
        return Theme::codeNumber();
    case CodeToken::keyword:
        return Theme::codeKeyword();
    }
    Q_UNREACHABLE();
}

} // namespace

CodeHighlighter::CodeHighlighter(QTextDocument *document)
    : QSyntaxHighlighter(document) {}

void CodeHighlighter::setLanguage(const CodeLanguage &language) {
    if (m_language != &language) {
        m_language = &language;
        rehighlight();
    }
}

void CodeHighlighter::highlightBlock(const QString &text) {
    if (text.size() > kLongestLine) {
        setCurrentBlockState(0);
        return;
    }
    setCurrentBlockState(
        lexCodeLine(*m_language, text, previousBlockState(),
                    [this](int start, int length, CodeToken token) { setFormat(start, length, colorOf(token)); }));
}

} // namespace tallowby
