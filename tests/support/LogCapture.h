#pragma once

#include "platform/Log.h"

#include <QStringList>

#include <mutex>

namespace tallowby::test {

/// Collects the log lines of its lifetime instead of printing them. Lines may come from any thread.
class LogCapture {
public:
    LogCapture()
        : m_previous(setLogSink([this](const QString &line) {
            const std::lock_guard lock(m_mutex);
            m_lines << line;
        })) {}
    ~LogCapture() { setLogSink(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    [[nodiscard]] QStringList lines() const {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }
    [[nodiscard]] QStringList take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
    LogSink m_previous;
};

} // namespace tallowby::test
