#include "app/saving/NoticeWindowController.h"

#include <utility>

namespace tallowby {

NoticeWindowController::NoticeWindowController(const WindowServices &window, QString title,
                                               std::vector<NoticeChoice> choices)
    : WindowController(window, QStringLiteral("NoticeWindow"))
    , m_title(std::move(title))
    , m_choices(std::move(choices)) {}

void NoticeWindowController::setDetails(const QString &details) {
    if (m_details != details) {
        m_details = details;
        Q_EMIT detailsChanged();
    }
}

QStringList NoticeWindowController::choices() const {
    QStringList texts;
    for (const NoticeChoice &choice : m_choices) {
        texts << choice.text;
    }
    return texts;
}

void NoticeWindowController::choose(int index) {
    if (index >= 0 && std::size_t(index) < m_choices.size()) {
        m_choices[std::size_t(index)].action();
    }
}

} // namespace tallowby
