#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace tallowby {

/// A link as it stands in a text, in characters.
struct TextLink {
    qsizetype start = 0;
    qsizetype length = 0;
    QUrl url;
};

/// Addresses of the web and of mail that are written out in a text, from its beginning on. What closes a sentence or a
/// bracket behind one does not belong to it.
[[nodiscard]] QList<TextLink> linksIn(const QString &text);

} // namespace tallowby
