#include "blocks/link/TextLinks.h"

#include "platform/WebLinks.h"

#include <QRegularExpression>

namespace tallowby {

namespace {

/// In characters; what is longer was not written to be followed.
constexpr qsizetype kLongestLink = 2'000;
constexpr qsizetype kMostLinks = 500;

/// Brackets that are open within the link may be closed by it.
bool closesNothing(QStringView link, QChar open, QChar close) {
    return link.endsWith(close) && link.count(close) > link.count(open);
}

QStringView withoutEndOfSentence(QStringView link) {
    constexpr QStringView kSentenceEnds = u".,;:!?'\"\u2019\u201d\u00bb\u2026";
    while (!link.isEmpty() && (kSentenceEnds.contains(link.back()) || closesNothing(link, u'(', u')') ||
                               closesNothing(link, u'[', u']') || closesNothing(link, u'{', u'}'))) {
        link.chop(1);
    }
    return link;
}

/// Blanks in the place of halves of letters, with which nothing is matched at all.
QString withoutHalves(QString text) {
    if (!text.isValidUtf16()) {
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
                ++i;
            } else if (text[i].isSurrogate()) {
                text[i] = u' ';
            }
        }
    }
    return text;
}

} // namespace

QList<TextLink> linksIn(const QString &text) {
    QList<TextLink> links;
    if (!text.contains(u':')) {
        return links;
    }
    // Neither marks that turn the direction of writing nor halves of letters: they would show another address than the
    // one that is opened.
    static const QRegularExpression kLink(QStringLiteral(R"(\b(?:https?://|mailto:)[^\s\p{C}<>"]+)"),
                                          QRegularExpression::CaseInsensitiveOption |
                                              QRegularExpression::UseUnicodePropertiesOption);
    auto matches = kLink.globalMatch(withoutHalves(text));
    while (matches.hasNext() && links.size() < kMostLinks) {
        const QRegularExpressionMatch match = matches.next();
        const QStringView link = withoutEndOfSentence(match.capturedView());
        const QUrl url(link.toString());
        if (link.size() <= kLongestLink && isWebLink(url)) {
            links.push_back({match.capturedStart(), link.size(), url});
        }
    }
    return links;
}

} // namespace tallowby
