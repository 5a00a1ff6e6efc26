#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace tallowby {

/// What colours a text of one programming language: a small lexer's knowledge, the same for all of them.
struct CodeLanguage {
    /// As it is kept with the block.
    QString id;
    /// As people write it.
    QString name;
    QSet<QString> keywords = {};
    QStringList lineComments = {};
    /// Both empty where there is none.
    QString blockCommentStart = {};
    QString blockCommentEnd = {};
    /// Each character begins and ends a string that ends with its line.
    QString quotes = {};
    /// Each begins and ends a string of any number of lines.
    QStringList longQuotes = {};
    bool isCaseSensitive = true;

    /// "plain" first, then by name.
    [[nodiscard]] static const QList<CodeLanguage> &all();
    /// That of the id, in any case of letters, or of one of its other usual names; plain text when there is none.
    [[nodiscard]] static const CodeLanguage &named(const QString &id);
};

enum class CodeToken { comment, text, number, keyword };

/// Tells each coloured part of a line: where it begins, how long it is and what it is. `state` is what the line before
/// returned, and 0 (or less) for the first one.
int lexCodeLine(const CodeLanguage &language, const QString &line, int state,
                const std::function<void(int start, int length, CodeToken token)> &tell);

} // namespace tallowby
