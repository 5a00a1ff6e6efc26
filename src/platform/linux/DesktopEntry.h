#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace tallowby {

/// The `[Desktop Entry]` group of a desktop entry file (freedesktop.org), its values as they stand in the file.
class DesktopEntry {
public:
    /// Lines that are none of the format's are passed over.
    [[nodiscard]] static DesktopEntry parse(const QByteArray &file);

    /// Empty when the key is absent.
    [[nodiscard]] QByteArray value(const QByteArray &key) const { return m_values.value(key); }

private:
    QHash<QByteArray, QByteArray> m_values;
};

/// `text` as a value of the type string.
[[nodiscard]] QByteArray desktopEntryString(const QString &text);
/// `program` as a command line without arguments, whatever characters its path has.
[[nodiscard]] QByteArray desktopEntryCommand(const QString &program);

} // namespace tallowby
