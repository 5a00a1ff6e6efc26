#pragma once

#include "blocks/code/CodeLanguage.h"

#include <QSyntaxHighlighter>

namespace tallowby {

/// Colours the document of a code block. Owned by the document.
class CodeHighlighter : public QSyntaxHighlighter {
public:
    explicit CodeHighlighter(QTextDocument *document);

    void setLanguage(const CodeLanguage &language);

protected:
    void highlightBlock(const QString &text) override;

private:
    const CodeLanguage *m_language = &CodeLanguage::all().front();
};

} // namespace tallowby
