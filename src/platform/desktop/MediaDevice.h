#pragma once

#include <QList>
#include <QString>

#include <memory>

namespace tallowby {

/// A microphone or a camera; `id` stands for it as long as it is connected.
struct MediaDevice {
    QString id;
    QString name;
};

/// What could not be made, and why, in words for the log.
template <typename Made>
struct MediaResult {
    std::unique_ptr<Made> made;
    QString error;
};

} // namespace tallowby
