#include "platform/linux/x11/X11Displays.h"

#include <QGuiApplication>
#include <QScreen>

namespace tallowby {

namespace {

/// FNV-1a, 32 bits: the same in every session, which qHash is not.
std::uint32_t stableHash(const QByteArray &bytes) {
    std::uint32_t hash = 0x811c9dc5;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x01000193;
    }
    return hash;
}

/// Monitors put their maker into their model as they like.
QString monitorName(const QScreen &screen) {
    const QString model = screen.model().simplified();
    const QString maker = screen.manufacturer().simplified();
    if (model.isEmpty()) {
        return screen.name();
    }
    return maker.isEmpty() || model.startsWith(maker, Qt::CaseInsensitive) ? model : QString(maker + u' ' + model);
}

} // namespace

std::vector<Display> X11Displays::all() const {
    std::vector<Display> displays;
    const auto screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        const QStringList identity{screen->name(), screen->manufacturer(), screen->model(), screen->serialNumber()};
        displays.push_back({.id = stableHash(identity.join(u'\n').toUtf8()),
                            .name = monitorName(*screen),
                            .frame = screen->geometry(),
                            .devicePixelRatio = screen->devicePixelRatio(),
                            .isMain = screen == QGuiApplication::primaryScreen(),
                            .connector = screen->name()});
    }
    return displays;
}

} // namespace tallowby
