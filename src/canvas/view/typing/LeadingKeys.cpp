#include "canvas/view/typing/LeadingKeys.h"

#include <utility>

namespace tallowby {

/// Whoever has chosen another tool meanwhile, with the pointer, has meant the keys as keys.
bool LeadingKeys::isFresh(const Effects &present, Scheduler::Duration now) const {
    return !m_keys.isEmpty() && now - m_lastPress <= kPatience && present == m_after;
}

void LeadingKeys::add(const QString &key, const Effects &before, const Effects &after, Scheduler::Duration now) {
    if (!isFresh(before, now)) {
        m_keys.clear();
        m_before = before;
    }
    m_keys += key;
    m_after = after;
    m_lastPress = now;
}

bool LeadingKeys::isBeginningOf(const QString &next, const Effects &present, Scheduler::Duration now) const {
    return isFresh(present, now) && (next.isEmpty() || !m_keys.endsWith(next));
}

QString LeadingKeys::take() {
    return std::exchange(m_keys, {});
}

} // namespace tallowby
