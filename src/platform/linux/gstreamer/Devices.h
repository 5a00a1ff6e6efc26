#pragma once

#include "platform/desktop/Audio.h"

#include <QList>
#include <QString>

#include <gst/gst.h>

namespace tallowby {

enum class DeviceKind { microphone, camera };

/// What is connected now. Waits for the system's answer, some milliseconds.
[[nodiscard]] QList<MediaDevice> connectedDevices(DeviceKind kind);

/// An element to record from: the one that the environment names (`TALLOWBY_AUDIO_SOURCE`, `TALLOWBY_VIDEO_SOURCE`),
/// the device of that id, or the system's own choice. Null when there is nothing to record from. The reference is
/// floating.
[[nodiscard]] GstElement *makeSource(DeviceKind kind, const QString &id);

/// The element's name that `variable` of the environment holds; `otherwise` when it is no such name.
[[nodiscard]] QString elementFromEnvironment(const char *variable, const QString &otherwise);

} // namespace tallowby
