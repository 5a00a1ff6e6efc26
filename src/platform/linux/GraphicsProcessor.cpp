#include "platform/scene/SceneGraph.h"

#include <QDir>

#include <algorithm>

#include <unistd.h>

namespace tallowby {

bool hasGraphicsProcessor() {
    // A render node is what programs compute and draw with; a screen that is only scanned out has none.
    const QDir devices(QStringLiteral("/dev/dri"));
    const QStringList nodes = devices.entryList({QStringLiteral("renderD*")}, QDir::System);
    return std::ranges::any_of(nodes, [&devices](const QString &node) {
        return access(qPrintable(devices.filePath(node)), R_OK | W_OK) == 0;
    });
}

} // namespace tallowby
