#include "frames/ProcessUsage.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <unistd.h>

namespace tallowby::bench {

namespace {

constexpr int kUserTimeField = 11;   // utime, counted behind the command's closing parenthesis
constexpr int kSystemTimeField = 12; // stime

QByteArray readProcFile(pid_t pid, const char *name) {
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1StringView(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

double mebibytesOf(const QByteArray &rollup, const QByteArray &key) {
    const qsizetype start = rollup.indexOf(key);
    if (start < 0) {
        return 0;
    }
    const qsizetype end = rollup.indexOf(" kB", start);
    return rollup.mid(start + key.size(), end - start - key.size()).trimmed().toDouble() / 1024.0;
}

} // namespace

ProcessUsage ProcessUsage::of(pid_t pid) {
    ProcessUsage usage;
    const QByteArray stat = readProcFile(pid, "stat");
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    if (fields.size() > kSystemTimeField) {
        const double ticks = fields[kUserTimeField].toDouble() + fields[kSystemTimeField].toDouble();
        usage.processorSeconds = ticks / double(sysconf(_SC_CLK_TCK));
    }
    const QByteArray rollup = readProcFile(pid, "smaps_rollup");
    usage.residentMiB = mebibytesOf(rollup, "\nRss:");
    usage.proportionalMiB = mebibytesOf(rollup, "\nPss:");
    return usage;
}

} // namespace tallowby::bench
