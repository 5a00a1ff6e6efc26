#include "platform/LooseDevices.h"

#include <utility>

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

void fillEndingMicrophone(GTypeInstance *instance, gpointer) {
    fill(GST_BIN(instance), "audiotestsrc is-live=true num-buffers=50");
}

/// The element in whose place the dying one is.
GstElementFactory *wholeParser = nullptr;

void fillDyingParser(GTypeInstance *instance, gpointer) {
    GstElement *identity = gst_element_factory_make("identity", nullptr);
    g_object_set(identity, "error-after", 40, nullptr);
    GstElement *parser = gst_element_factory_create(wholeParser, nullptr);
    gst_bin_add_many(GST_BIN(instance), identity, parser, nullptr);
    gst_element_link(identity, parser);
    const std::pair<GstElement *, const char *> ends[]{{identity, "sink"}, {parser, "src"}};
    for (const auto &[element, name] : ends) {
        GstPad *end = gst_element_get_static_pad(element, name);
        gst_element_add_pad(GST_ELEMENT(instance), gst_ghost_pad_new(name, end));
        gst_object_unref(end);
    }
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
        registerBin("EndingMicrophone", "endingmicrophone", fillEndingMicrophone);
        return true;
    }();
    static_cast<void>(isDone);
}

DyingEncoder::DyingEncoder() {
    gst_init(nullptr, nullptr);
    wholeParser = gst_element_factory_find("h264parse");
    // Loaded, and so able to make one whatever its name stands for.
    gst_object_unref(gst_object_ref_sink(gst_element_factory_create(wholeParser, nullptr)));
    registerBin("DyingParser", "h264parse", fillDyingParser);
}

DyingEncoder::~DyingEncoder() {
    gst_registry_add_feature(gst_registry_get(), GST_PLUGIN_FEATURE(wholeParser));
    gst_object_unref(wholeParser);
}

} // namespace tallowby::test
