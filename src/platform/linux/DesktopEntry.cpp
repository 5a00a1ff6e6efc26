#include "platform/linux/DesktopEntry.h"

#include <algorithm>

namespace tallowby {

namespace {

constexpr QByteArrayView kReservedInCommands{" \t\n\"'\\><~|&;$*?#()`"};
constexpr QByteArrayView kEscapedInQuotes{"\"`$\\"};

QByteArray escapeString(const QByteArray &bytes) {
    QByteArray escaped;
    for (const char byte : bytes) {
        switch (byte) {
        case '\\':
            escaped += "\\\\";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\t':
            escaped += "\\t";
            break;
        case '\r':
            escaped += "\\r";
            break;
        default:
            escaped += byte;
        }
    }
    return escaped;
}

} // namespace

DesktopEntry DesktopEntry::parse(const QByteArray &file) {
    DesktopEntry entry;
    bool isInGroup = false;
    for (const QByteArray &rawLine : file.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('[')) {
            isInGroup = line == "[Desktop Entry]";
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (isInGroup && equals > 0 && !line.startsWith('#')) {
            entry.m_values.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
    return entry;
}

QByteArray desktopEntryString(const QString &text) {
    return escapeString(text.toUtf8());
}

QByteArray desktopEntryCommand(const QString &program) {
    QByteArray path = program.toUtf8();
    path.replace('%', "%%"); // A single one stands for what a file manager would fill in.
    const bool needsQuotes = std::ranges::any_of(path, [](char byte) { return kReservedInCommands.contains(byte); });
    if (!needsQuotes) {
        return escapeString(path);
    }
    QByteArray quoted = "\"";
    for (const char byte : std::as_const(path)) {
        if (kEscapedInQuotes.contains(byte)) {
            quoted += '\\';
        }
        quoted += byte;
    }
    quoted += '"';
    return escapeString(quoted); // The quoting is inside a string, which has its own escapes.
}

} // namespace tallowby
