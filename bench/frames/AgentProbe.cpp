#include "frames/AgentProbe.h"

#include "frames/ProcessUsage.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <cmath>

namespace tallowby::bench {

namespace {

constexpr int kLineTimeout = 30'000;
constexpr int kSettleMilliseconds = 3'000;

/// Reads the program's lines until one contains `part`.
bool waitForLine(QProcess &agent, const QString &part) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kLineTimeout) {
        while (agent.canReadLine()) {
            if (QString::fromUtf8(agent.readLine()).contains(part)) {
                return true;
            }
        }
        agent.waitForReadyRead(100);
    }
    return false;
}

double rounded(double value) {
    return std::round(value * 100.0) / 100.0;
}

QJsonObject watchRest(const QProcess &agent, int seconds) {
    QThread::msleep(kSettleMilliseconds);
    const auto pid = pid_t(agent.processId());
    const ProcessUsage before = ProcessUsage::of(pid);
    QThread::sleep(ulong(seconds));
    const ProcessUsage after = ProcessUsage::of(pid);
    return {
        {QStringLiteral("percent_of_a_core"),
         rounded(100.0 * (after.processorSeconds - before.processorSeconds) / seconds)},
        {QStringLiteral("resident_mib"), rounded(after.residentMiB)},
        {QStringLiteral("proportional_mib"), rounded(after.proportionalMiB)},
    };
}

} // namespace

QJsonObject probeAgent(const QString &program, int idleSeconds) {
    QProcess agent;
    agent.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    agent.start(program, QStringList());
    if (!waitForLine(agent, QStringLiteral("Tallowby ready!"))) {
        agent.kill();
        agent.waitForFinished();
        return {{QStringLiteral("error"), QStringLiteral("the program did not get ready")}};
    }
    QJsonObject result{{QStringLiteral("start_to_ready_ms"), double(timer.elapsed())}};
    result.insert(QStringLiteral("idle_hidden"), watchRest(agent, idleSeconds));
    QProcess::execute(program, {QStringLiteral("--toggle")});
    if (waitForLine(agent, QStringLiteral("Flip complete. isOpen: true"))) {
        result.insert(QStringLiteral("idle_showing"), watchRest(agent, idleSeconds));
    }
    agent.terminate();
    agent.waitForFinished();
    return result;
}

} // namespace tallowby::bench
