#pragma once

#include "platform/desktop/VideoFrames.h"
#include "platform/linux/gstreamer/Pipeline.h"

#include <memory>

namespace tallowby {

/// Hands the pictures that reach `sink`, an appsink of BGRx pictures, to `frames`, from the thread that brings them and
/// without copying them.
void connectPictures(GstElement *sink, const std::shared_ptr<VideoFrames> &frames);

} // namespace tallowby
