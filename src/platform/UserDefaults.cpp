#include "platform/UserDefaults.h"

#include <QFile>

namespace tallowby {

UserDefaults::UserDefaults()
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tallowby"),
                 QStringLiteral("Tallowby")) {
    m_settings.setFallbacksEnabled(false);
}

UserDefaults::UserDefaults(const QString &fileName)
    : m_settings(fileName, QSettings::NativeFormat) {
    m_settings.setFallbacksEnabled(false);
}

bool UserDefaults::contains(const QString &key) const {
    return m_settings.contains(key);
}

std::optional<std::int64_t> UserDefaults::integer(const QString &key) const {
    bool isNumber = false;
    const std::int64_t value = m_settings.value(key).toString().toLongLong(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<QString> UserDefaults::string(const QString &key) const {
    const QVariant value = m_settings.value(key);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

bool UserDefaults::boolean(const QString &key) const {
    return m_settings.value(key).toBool();
}

void UserDefaults::setInteger(const QString &key, std::int64_t value) {
    set(key, qlonglong(value));
}

void UserDefaults::setString(const QString &key, const QString &value) {
    set(key, value);
}

void UserDefaults::setBoolean(const QString &key, bool value) {
    set(key, value);
}

void UserDefaults::remove(const QString &key) {
    m_settings.remove(key);
    m_settings.sync();
}

QString UserDefaults::fileName() const {
    return m_settings.fileName();
}

void UserDefaults::set(const QString &key, const QVariant &value) {
    m_settings.setValue(key, value);
    m_settings.sync();
    QFile::setPermissions(m_settings.fileName(), QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace tallowby
