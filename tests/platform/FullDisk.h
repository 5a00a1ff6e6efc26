#pragma once

#include <csignal>

#include <sys/resource.h>

namespace tallowby::test {

/// As long as it lives no file grows beyond so many bytes, as if its disk were full.
class FullDisk {
public:
    explicit FullDisk(rlim_t room)
        : m_action(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit full{room, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_action);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    void (*m_action)(int);
    rlimit m_before{};
};

} // namespace tallowby::test
