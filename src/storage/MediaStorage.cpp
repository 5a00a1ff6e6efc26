#include "storage/MediaStorage.h"

#include "platform/ApplicationSupport.h"

#include <QDir>
#include <QFileInfo>

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

std::optional<QString> existingFile(const QString &name) {
    const bool isBare =
        !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/') && !name.contains(QChar(0));
    const std::optional<QString> folder = isBare ? directory() : std::nullopt;
    if (!folder) {
        return std::nullopt;
    }
    const QFileInfo file(*folder + u'/' + name);
    return file.isFile() && !file.isSymLink() ? std::optional(file.filePath()) : std::nullopt;
}

} // namespace tallowby::MediaStorage
