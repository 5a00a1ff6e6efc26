#include "platform/linux/gstreamer/Pipeline.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// What is softer than this is drawn as silence.
constexpr double kFloorDecibels = -54;

} // namespace

QString loadGStreamer() {
    static const QString kError = [] {
        GError *error = nullptr;
        if (gst_init_check(nullptr, nullptr, &error)) {
            return QString();
        }
        const QString text = error ? QString::fromUtf8(error->message) : QStringLiteral("GStreamer does not start");
        g_clear_error(&error);
        return text;
    }();
    return kError;
}

Pipeline::Pipeline(GstElement *pipeline)
    : m_pipeline(pipeline)
    , m_bus(gst_element_get_bus(pipeline)) {}

Pipeline::~Pipeline() {
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

std::unique_ptr<Pipeline> Pipeline::parse(const QString &description, QString &error) {
    error = loadGStreamer();
    if (!error.isEmpty()) {
        return nullptr;
    }
    GError *parseError = nullptr;
    GstElement *made =
        gst_parse_launch_full(description.toUtf8().constData(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &parseError);
    if (!made) {
        error = QString::fromUtf8(parseError ? parseError->message : "no pipeline");
        g_clear_error(&parseError);
        return nullptr;
    }
    return std::make_unique<Pipeline>(GST_ELEMENT(gst_object_ref_sink(made)));
}

GstPointer<GstElement> Pipeline::element(const char *name) const {
    return GstPointer<GstElement>(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), name));
}

bool Pipeline::setState(GstState state) {
    return gst_element_set_state(m_pipeline.get(), state) != GST_STATE_CHANGE_FAILURE;
}

GstMessagePointer Pipeline::next(GstMessageType types, GstClockTime wait) {
    return GstMessagePointer(gst_bus_timed_pop_filtered(m_bus.get(), wait, types));
}

MediaFailure failureOf(GstMessage *errorMessage, MediaFailure::Kind otherwise) {
    using Kind = MediaFailure::Kind;
    GError *error = nullptr;
    gst_message_parse_error(errorMessage, &error, nullptr);
    if (!error) {
        return {QStringLiteral("unknown"), otherwise};
    }
    MediaFailure failure{QString::fromUtf8(error->message), otherwise};
    if (error->domain == GST_RESOURCE_ERROR) {
        switch (error->code) {
        case GST_RESOURCE_ERROR_NO_SPACE_LEFT:
            failure.kind = Kind::diskFull;
            break;
        case GST_RESOURCE_ERROR_OPEN_WRITE:
        case GST_RESOURCE_ERROR_WRITE:
        case GST_RESOURCE_ERROR_SEEK:
        case GST_RESOURCE_ERROR_SYNC:
        case GST_RESOURCE_ERROR_CLOSE:
            failure.kind = Kind::fileFailed;
            break;
        default:
            failure.kind = Kind::deviceFailed;
            break;
        }
    }
    g_clear_error(&error);
    return failure;
}

float loudness(GstMessage *levelMessage) {
    const GstStructure *measured = gst_message_get_structure(levelMessage);
    if (!measured || !gst_structure_has_name(measured, "level")) {
        return 0;
    }
    const GValue *value = gst_structure_get_value(measured, "rms");
    if (!value) {
        return 0;
    }
    // GStreamer still hands over the channels in a type that GLib has put aside.
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    const auto *channels = static_cast<const GValueArray *>(g_value_get_boxed(value));
    const double decibels =
        channels && channels->n_values > 0 ? g_value_get_double(&channels->values[0]) : kFloorDecibels;
    G_GNUC_END_IGNORE_DEPRECATIONS
    return std::isfinite(decibels) ? float(std::clamp(1 - decibels / kFloorDecibels, 0.0, 1.0)) : 0;
}

} // namespace tallowby
