#include "search/Excerpt.h"

#include "sync/SearchIndex.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tallowby::Excerpt)
};

/// More than a line of the panel holds.
constexpr qsizetype kLongestLine = 120;
/// So much stands before a match that is far inside.
constexpr qsizetype kLead = 24;

/// One line of a text around `from`.
QString line(const QString &text, qsizetype from, qsizetype length) {
    QString part = text.mid(from, length);
    part.replace(u'\n', u' ');
    return part.simplified();
}

QString marked(const QString &text, const QString &query, const QColor &color) {
    const auto place = text.indexOf(query, 0, Qt::CaseInsensitive);
    if (query.isEmpty() || place < 0) {
        return text.toHtmlEscaped();
    }
    return text.left(place).toHtmlEscaped() + u"<b><font color=\"" + color.name() + u"\">" +
           text.mid(place, query.size()).toHtmlEscaped() + u"</font></b>" +
           text.mid(place + query.size()).toHtmlEscaped();
}

/// The line that a match stands in, cut so that it is seen.
QString around(const QString &text, const QString &query) {
    const auto place = text.indexOf(query, 0, Qt::CaseInsensitive);
    const auto lineStart = place <= 0 ? 0 : text.lastIndexOf(u'\n', place - 1) + 1;
    const bool isCut = place - lineStart > kLead;
    qsizetype from = isCut ? place - kLead : std::max<qsizetype>(0, lineStart);
    if (const auto blank = text.indexOf(u' ', from); isCut && blank >= 0 && blank < place) {
        from = blank + 1;
    }
    const QString found = line(text, from, kLongestLine);
    return isCut ? u"…" + found : found;
}

} // namespace

Excerpt excerptOf(const BlockFields &fields, const QString &query, const QString &kindName, const QColor &markColor) {
    const QStringList texts = searchableTexts(fields);
    const auto contains = [&query](const QString &text) { return text.contains(query, Qt::CaseInsensitive); };
    const auto matching = std::ranges::find_if(texts, contains);
    QString title = kindName;
    QString rest;
    if (!texts.isEmpty()) {
        const QString first = texts.first().trimmed();
        const auto end = first.indexOf(u'\n');
        title = line(first, 0, end < 0 ? kLongestLine : std::min(end, kLongestLine));
        rest = end < 0 ? line(texts.mid(1, 5).join(QStringLiteral(" · ")), 0, kLongestLine)
                       : line(first, end, kLongestLine);
    }
    const bool isInTitle = contains(title);
    const QString snippet = matching == texts.end() || isInTitle ? rest : around(*matching, query);
    return {marked(title, query, markColor), marked(snippet, query, markColor),
            snippet.isEmpty() ? title : title + u", " + snippet};
}

QString ageInWords(Timestamp then, Scheduler::WallClock::time_point now) {
    const double seconds = Timestamp::from(now).secondsSinceReference - then.secondsSinceReference;
    constexpr double kMinute = 60;
    constexpr double kHour = 60 * kMinute;
    constexpr double kDay = 24 * kHour;
    // Bounded: a row from elsewhere may claim any time.
    const auto count = [seconds](double unit) { return int(std::min(seconds / unit, 9999.0)); };
    if (seconds < kMinute) {
        return Words::tr("just now");
    }
    if (seconds < kHour) {
        return Words::tr("%1 min ago").arg(count(kMinute));
    }
    if (seconds < kDay) {
        return Words::tr("%1 h ago").arg(count(kHour));
    }
    if (seconds < 7 * kDay) {
        return Words::tr("%1 d ago").arg(count(kDay));
    }
    if (seconds < 60 * kDay) {
        return Words::tr("%1 wk ago").arg(count(7 * kDay));
    }
    if (seconds < 730 * kDay) {
        return Words::tr("%1 mo ago").arg(count(30.44 * kDay));
    }
    return Words::tr("%1 yr ago").arg(count(365.25 * kDay));
}

} // namespace tallowby
