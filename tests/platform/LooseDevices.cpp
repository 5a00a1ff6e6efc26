#include "platform/LooseDevices.h"

#include <gst/gst.h>

namespace tallowby::test {

namespace {

/// A bin with what the description says in it, and its one end outside.
void fill(GstBin *bin, const char *description) {
    GstElement *inside = gst_parse_bin_from_description(description, TRUE, nullptr);
    gst_bin_add(bin, inside);
    GstPad *end = gst_element_get_static_pad(inside, "src");
    gst_element_add_pad(GST_ELEMENT(bin), gst_ghost_pad_new("src", end));
    gst_object_unref(end);
}

void fillMicrophone(GTypeInstance *instance, gpointer) {
    // 1,024 samples each.
    fill(GST_BIN(instance), "audiotestsrc is-live=true ! identity error-after=50");
}

void fillCamera(GTypeInstance *instance, gpointer) {
    fill(GST_BIN(instance), "videotestsrc is-live=true ! video/x-raw,framerate=30/1 ! identity error-after=60");
}

void registerBin(const char *typeName, const char *elementName, GInstanceInitFunc fillIt) {
    GTypeQuery bin;
    g_type_query(GST_TYPE_BIN, &bin);
    const GType type = g_type_register_static_simple(GST_TYPE_BIN, typeName, bin.class_size, nullptr, bin.instance_size,
                                                     fillIt, GTypeFlags(0));
    gst_element_register(nullptr, elementName, GST_RANK_NONE, type);
}

} // namespace

void registerLooseDevices() {
    static const bool isDone = [] {
        gst_init(nullptr, nullptr);
        registerBin("LooseMicrophone", "loosemicrophone", fillMicrophone);
        registerBin("LooseCamera", "loosecamera", fillCamera);
        return true;
    }();
    static_cast<void>(isDone);
}

} // namespace tallowby::test
