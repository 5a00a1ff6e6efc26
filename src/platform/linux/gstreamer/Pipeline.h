#pragma once

#include "platform/desktop/MediaFailure.h"

#include <QString>

#include <memory>
#include <vector>

#include <gst/gst.h>

namespace tallowby {

/// Loads GStreamer, once. An error in words, or nothing.
[[nodiscard]] QString loadGStreamer();

struct GstObjectUnref {
    void operator()(void *object) const { gst_object_unref(object); }
};
struct GstMessageUnref {
    void operator()(GstMessage *message) const { gst_message_unref(message); }
};
template <typename Type>
using GstPointer = std::unique_ptr<Type, GstObjectUnref>;
using GstMessagePointer = std::unique_ptr<GstMessage, GstMessageUnref>;

/// A GStreamer pipeline and what it has said. It ends with this object. Any one thread at a time.
class Pipeline {
public:
    /// Takes over the reference.
    explicit Pipeline(GstElement *pipeline);
    ~Pipeline();
    Pipeline(const Pipeline &) = delete;
    Pipeline &operator=(const Pipeline &) = delete;

    /// Of that description, in the words of gst-launch. Null and an error when an element is missing.
    [[nodiscard]] static std::unique_ptr<Pipeline> parse(const QString &description, QString &error);

    [[nodiscard]] GstElement *get() const { return m_pipeline.get(); }
    /// Null for a name that there is not.
    [[nodiscard]] GstPointer<GstElement> element(const char *name) const;
    /// False when it fails at once.
    bool setState(GstState state);
    /// The next of those messages, waiting for it as long as that; null when none comes. All others are dropped.
    [[nodiscard]] GstMessagePointer next(GstMessageType types, GstClockTime wait);

private:
    GstPointer<GstElement> m_pipeline;
    GstPointer<GstBus> m_bus;
};

/// What an error message says. It is of the kind `otherwise` when it has to do with neither a device nor a file.
[[nodiscard]] MediaFailure failureOf(GstMessage *errorMessage, MediaFailure::Kind otherwise);
/// From what the element `level` measures, in decibels of the largest amplitude, to a share of the range that is heard.
[[nodiscard]] float loudness(GstMessage *levelMessage);

} // namespace tallowby
