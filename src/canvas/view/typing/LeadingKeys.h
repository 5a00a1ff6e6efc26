#pragma once

#include "canvas/model/CanvasTool.h"
#include "platform/Scheduler.h"

#include <QString>

#include <chrono>

namespace tallowby {

/// Keys that act on the canvas and may turn out to be the first characters of a note: "14:30 dentist", "? why". Such a
/// key acts at once. When another character follows soon and nothing else has happened, both were text: the note begins
/// with them, and what the keys did is taken back. The same key again goes on acting, so that a digit pressed twice
/// locks its tool; what follows then still makes text of all of them.
class LeadingKeys {
public:
    /// From one key to the next.
    static constexpr std::chrono::milliseconds kPatience{500};

    /// What the keys change.
    struct Effects {
        CanvasTool tool;
        bool isToolLocked = false;
        bool isHelpVisible = false;
        friend bool operator==(const Effects &, const Effects &) = default;
    };

    /// A key has acted.
    void add(const QString &key, const Effects &before, const Effects &after, Scheduler::Duration now);
    void clear() { m_keys.clear(); }
    /// Whether the last key was pressed a moment ago and what the keys did still stands.
    [[nodiscard]] bool isFresh(const Effects &present, Scheduler::Duration now) const;
    /// Whether the keys so far are the beginning of the text in which this character follows.
    [[nodiscard]] bool isBeginningOf(const QString &next, const Effects &present, Scheduler::Duration now) const;
    /// As it was before the first of the keys.
    [[nodiscard]] const Effects &before() const { return m_before; }
    /// Hands over the keys, which are text from now on.
    [[nodiscard]] QString take();

private:
    QString m_keys;
    Effects m_before;
    Effects m_after;
    Scheduler::Duration m_lastPress{0};
};

} // namespace tallowby
