#pragma once

#include "platform/desktop/MediaFailure.h"
#include "platform/linux/gstreamer/Pipeline.h"

#include <QLatin1StringView>

#include <functional>
#include <optional>

class QThreadPool;

namespace tallowby {

/// The end of a pipeline that records. The file grows by pieces of a second, each of which can be played, and nothing
/// that was written is needed or moved at its end: whatever interrupts a recording leaves the pieces before it. Nothing
/// waits in the program's own memory either.
inline constexpr QLatin1StringView kRecordingEnd{
    "mp4mux name=to fragment-duration=1000 fragment-mode=dash-or-mss ! filesink name=file buffer-mode=unbuffered"};

/// Makes the file of a pipeline that ends so, for the user alone. Nothing when it is made.
[[nodiscard]] std::optional<MediaFailure> createRecording(const Pipeline &pipeline, const QString &path);

/// Waits until everything on its way is in the file, whose end has been announced to the pipeline, and ends the
/// pipeline. A failed recording is mended; a file in which nothing can be played is removed. Returns `failure`, or what
/// failed since. Any thread but the main one.
[[nodiscard]] std::optional<MediaFailure> closeRecording(Pipeline &pipeline, const QString &path,
                                                         std::optional<MediaFailure> failure);

/// Reads the length of a recording by a thread of `readers`, as Audio::readLength says.
void readLengthLater(QThreadPool &readers, const QString &path, const std::function<void(std::optional<double>)> &done);

} // namespace tallowby
