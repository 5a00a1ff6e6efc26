#include "storage/MediaStorage.h"

#include "platform/ApplicationSupport.h"

#include <QDir>

namespace tallowby::MediaStorage {

std::optional<QString> directory() {
    const std::optional<QString> support = applicationSupportFolder();
    if (!support) {
        return std::nullopt;
    }
    const QString folder = *support + u"/media";
    if (!QDir(folder).exists()) {
        QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    return folder;
}

} // namespace tallowby::MediaStorage
