#include "platform/linux/gstreamer/GstPictures.h"

#include <gst/app/gstappsink.h>

namespace tallowby {

namespace {

/// A picture that is looked at; its pixels are the buffer's.
struct MappedPicture {
    GstSample *sample;
    GstMapInfo map;
};

void unmap(void *info) {
    auto *picture = static_cast<MappedPicture *>(info);
    gst_buffer_unmap(gst_sample_get_buffer(picture->sample), &picture->map);
    gst_sample_unref(picture->sample);
    delete picture;
}

/// Takes over the sample.
QImage toImage(GstSample *sample) {
    const GstStructure *format = gst_caps_get_structure(gst_sample_get_caps(sample), 0);
    int width = 0;
    int height = 0;
    gst_structure_get_int(format, "width", &width);
    gst_structure_get_int(format, "height", &height);
    auto *picture = new MappedPicture{sample, {}};
    const bool isMapped = gst_buffer_map(gst_sample_get_buffer(sample), &picture->map, GST_MAP_READ);
    // Rows of four bytes a pixel have no gaps.
    if (!isMapped || width <= 0 || height <= 0 || picture->map.size < gsize(width) * gsize(height) * 4) {
        if (isMapped) {
            gst_buffer_unmap(gst_sample_get_buffer(sample), &picture->map);
        }
        gst_sample_unref(sample);
        delete picture;
        return {};
    }
    return QImage(static_cast<const uchar *>(picture->map.data), width, height, width * 4, QImage::Format_RGB32, unmap,
                  picture);
}

void hand(GstSample *sample, gpointer data) {
    if (sample) {
        (*static_cast<std::shared_ptr<VideoFrames> *>(data))->push(toImage(sample));
    }
}

GstFlowReturn onSample(GstAppSink *sink, gpointer data) {
    hand(gst_app_sink_pull_sample(sink), data);
    return GST_FLOW_OK;
}

GstFlowReturn onPreroll(GstAppSink *sink, gpointer data) {
    hand(gst_app_sink_pull_preroll(sink), data);
    return GST_FLOW_OK;
}

} // namespace

void connectPictures(GstElement *sink, const std::shared_ptr<VideoFrames> &frames) {
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = onSample;
    callbacks.new_preroll = onPreroll;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, new std::shared_ptr<VideoFrames>(frames),
                               [](gpointer data) { delete static_cast<std::shared_ptr<VideoFrames> *>(data); });
}

} // namespace tallowby
