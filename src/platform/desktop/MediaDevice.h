#pragma once

#include "platform/desktop/MediaFailure.h"

#include <QList>
#include <QString>

#include <memory>

namespace tallowby {

/// A microphone or a camera; `id` stands for it as long as it is connected.
struct MediaDevice {
    QString id;
    QString name;
};

/// Something that was made, or else why it was not.
template <typename Made>
struct MediaResult {
    std::unique_ptr<Made> made;
    MediaFailure failure;
};

} // namespace tallowby
