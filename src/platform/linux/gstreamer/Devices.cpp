#include "platform/linux/gstreamer/Devices.h"

#include "platform/linux/gstreamer/Pipeline.h"

#include <QRegularExpression>

namespace tallowby {

namespace {

struct DeviceListFree {
    void operator()(GList *list) const { g_list_free_full(list, gst_object_unref); }
};
using DeviceList = std::unique_ptr<GList, DeviceListFree>;

DeviceList probe(DeviceKind kind) {
    const GstPointer<GstDeviceMonitor> monitor(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), kind == DeviceKind::camera ? "Video/Source" : "Audio/Source", nullptr);
    return DeviceList(gst_device_monitor_get_devices(monitor.get()));
}

/// Those that record; not what a loudspeaker plays.
QList<GstDevice *> sources(const DeviceList &devices) {
    QList<GstDevice *> found;
    for (const GList *item = devices.get(); item; item = item->next) {
        auto *device = GST_DEVICE(item->data);
        GstStructure *properties = gst_device_get_properties(device);
        const char *kind = properties ? gst_structure_get_string(properties, "device.class") : nullptr;
        if (!kind || qstrcmp(kind, "monitor") != 0) {
            found << device;
        }
        if (properties) {
            gst_structure_free(properties);
        }
    }
    return found;
}

QString nameOf(GstDevice *device) {
    char *name = gst_device_get_display_name(device);
    const QString text = QString::fromUtf8(name);
    g_free(name);
    return text;
}

} // namespace

QList<MediaDevice> connectedDevices(DeviceKind kind) {
    const DeviceList devices = probe(kind);
    QList<MediaDevice> found;
    for (GstDevice *device : sources(devices)) {
        const QString name = nameOf(device);
        found << MediaDevice{name, name};
    }
    return found;
}

GstElement *makeSource(DeviceKind kind, const QString &id) {
    const bool isCamera = kind == DeviceKind::camera;
    const QString chosen = elementFromEnvironment(isCamera ? "TALLOWBY_VIDEO_SOURCE" : "TALLOWBY_AUDIO_SOURCE", {});
    if (!chosen.isEmpty()) {
        GstElement *source = gst_element_factory_make(chosen.toLatin1().constData(), nullptr);
        if (source && g_object_class_find_property(G_OBJECT_GET_CLASS(source), "is-live")) {
            // At the pace of a real one.
            g_object_set(source, "is-live", TRUE, nullptr);
        }
        return source;
    }
    const DeviceList devices = probe(kind);
    const QList<GstDevice *> found = sources(devices);
    if (found.isEmpty()) {
        return nullptr;
    }
    for (GstDevice *device : found) {
        if (!id.isEmpty() && nameOf(device) == id) {
            return gst_device_create_element(device, nullptr);
        }
    }
    return isCamera ? gst_device_create_element(found.first(), nullptr)
                    : gst_element_factory_make("autoaudiosrc", nullptr);
}

QString elementFromEnvironment(const char *variable, const QString &otherwise) {
    static const QRegularExpression kElement(QStringLiteral("^[a-z0-9]{1,40}$"));
    const QString chosen = qEnvironmentVariable(variable);
    return kElement.match(chosen).hasMatch() ? chosen : otherwise;
}

} // namespace tallowby
