#include "blocks/card/RecordingMenu.h"

#include <QCoreApplication>

#include <utility>

namespace tallowby {

namespace {

QString translated(const char *text) {
    return QCoreApplication::translate("RecordingMenu", text);
}

} // namespace

std::vector<MenuEntry> RecordingMenu::entries() const {
    const auto choice = [this](const QString &name, const QString &id) {
        return MenuEntry{.text = name,
                         .symbol = id == chosenId ? QStringLiteral("checkmark") : QString(),
                         .action = [choose = choose, id] { choose(id); }};
    };
    std::vector<MenuEntry> choices{choice(translated("Chosen by the system"), {})};
    for (const MediaDevice &each : devices) {
        choices.push_back(choice(each.name, each.id));
    }
    std::vector<MenuEntry> entries{{.text = device, .symbol = symbol, .children = std::move(choices)}};
    if (restorePrevious) {
        entries.push_back({.text = translated("Restore Previous Recording"),
                           .symbol = QStringLiteral("arrow.uturn.backward"),
                           .action = restorePrevious});
    }
    return entries;
}

} // namespace tallowby
