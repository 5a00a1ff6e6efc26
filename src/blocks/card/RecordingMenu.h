#pragma once

#include "canvas/overlay/menu/MenuEntriesModel.h"
#include "platform/desktop/MediaDevice.h"

#include <QList>
#include <QString>

#include <functional>
#include <vector>

namespace tallowby {

/// The part of a voice or video note's menu that both have.
struct RecordingMenu {
    /// The name and symbol of what records.
    QString device;
    QString symbol;
    QList<MediaDevice> devices;
    /// Empty when the system chooses.
    QString chosenId;
    std::function<void(const QString &id)> choose;
    /// Empty when there is no recording to go back to.
    std::function<void()> restorePrevious = {};

    [[nodiscard]] std::vector<MenuEntry> entries() const;
};

} // namespace tallowby
