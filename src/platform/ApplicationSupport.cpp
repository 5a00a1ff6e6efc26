#include "platform/ApplicationSupport.h"

#include <QDir>
#include <QStandardPaths>

namespace tallowby {

std::optional<QString> applicationSupportFolder() {
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (dataHome.isEmpty()) {
        return std::nullopt;
    }
    const QString folder = dataHome + u"/Tallowby";
    if (!QDir(folder).exists()) {
        QDir().mkpath(dataHome);
        // Created private rather than narrowed afterwards: there is no moment at which others could look in.
        QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    return folder;
}

} // namespace tallowby
