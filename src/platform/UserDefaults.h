#pragma once

#include <QSettings>
#include <QString>

#include <cstdint>
#include <optional>

namespace tallowby {

/// The user's stored choices, by key, in `$XDG_CONFIG_HOME/Tallowby/Tallowby.conf`. Keys stand in the file as given;
/// a key with a full stop is no group. Main thread only. Writes reach the disk with `synchronize`, which every setter
/// calls.
class UserDefaults {
public:
    /// The defaults of the running program.
    UserDefaults();
    /// Defaults in a file of the caller's choice.
    explicit UserDefaults(const QString &fileName);

    [[nodiscard]] bool contains(const QString &key) const;
    /// None when the key is absent or its value is no whole number.
    [[nodiscard]] std::optional<std::int64_t> integer(const QString &key) const;
    [[nodiscard]] std::optional<QString> string(const QString &key) const;
    [[nodiscard]] bool boolean(const QString &key) const;

    void setInteger(const QString &key, std::int64_t value);
    void setString(const QString &key, const QString &value);
    void setBoolean(const QString &key, bool value);
    void remove(const QString &key);

    [[nodiscard]] QString fileName() const;

private:
    void set(const QString &key, const QVariant &value);

    QSettings m_settings;
};

} // namespace tallowby
