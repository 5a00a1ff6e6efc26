#include "platform/Log.h"

#include <QByteArray>

#include <mutex>

#include <unistd.h>

namespace tallowby {

namespace {

std::mutex sinkMutex;
LogSink currentSink;

void writeWhole(const QByteArray &bytes) {
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(STDOUT_FILENO, bytes.constData() + written, size_t(bytes.size() - written));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return; // Nobody reads our output any more; there is nowhere to say so.
        }
        written += count;
    }
}

} // namespace

void logLine(QStringView line) {
    QString text = line.toString();
    text.replace(u'\n', u' ');
    text.replace(u'\r', u' ');
    const std::lock_guard lock(sinkMutex);
    if (currentSink) {
        currentSink(text);
        return;
    }
    writeWhole(text.toUtf8() + '\n');
}

LogSink setLogSink(LogSink sink) {
    const std::lock_guard lock(sinkMutex);
    return std::exchange(currentSink, std::move(sink));
}

} // namespace tallowby
