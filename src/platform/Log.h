#pragma once

#include <QString>

#include <functional>

namespace tallowby {

/// Writes one line to standard output, whole and at once. Line breaks inside the text are shown as spaces, so that one
/// call is always one line. Any thread. Never hand it a note's text, a key or an embedding.
void logLine(QStringView line);

using LogSink = std::function<void(const QString &)>;
/// Sends the lines elsewhere; an empty sink brings standard output back. Returns the sink that was in force.
LogSink setLogSink(LogSink sink);

} // namespace tallowby
