#pragma once

#include "model/Block.h"
#include "platform/Scheduler.h"

#include <QColor>
#include <QString>

namespace tallowby {

/// What a result of a search shows of a block. Both lines are styled text in which the match is marked; what the block
/// says is escaped.
struct Excerpt {
    QString title;
    /// Empty when the title says it all.
    QString snippet;
    /// The two as they are spoken.
    QString plain;
};

/// `kindName` stands for a block without words.
[[nodiscard]] Excerpt excerptOf(const BlockFields &fields, const QString &query, const QString &kindName,
                                const QColor &markColor);
/// "just now", "5 min ago", "3 h ago" …
[[nodiscard]] QString ageInWords(Timestamp then, Scheduler::WallClock::time_point now);

} // namespace tallowby
