#include "platform/NotificationCenter.h"

#include <algorithm>
#include <vector>

namespace tallowby {

namespace {

struct Entry {
    QString name;
    NotificationCenter::Handler handler;
    bool isActive = true;
};

} // namespace

struct NotificationCenter::Registry {
    std::vector<std::shared_ptr<Entry>> entries;

    void prune() {
        std::erase_if(entries, [](const auto &entry) { return !entry->isActive; });
    }
};

NotificationCenter::Observation &NotificationCenter::Observation::operator=(Observation &&other) noexcept {
    if (this != &other) {
        stop();
        m_token = std::move(other.m_token);
    }
    return *this;
}

NotificationCenter::Observation::~Observation() {
    stop();
}

void NotificationCenter::Observation::stop() {
    m_token.reset();
}

NotificationCenter::NotificationCenter()
    : m_registry(std::make_shared<Registry>()) {}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Observation NotificationCenter::observe(const QString &name, Handler handler) {
    auto entry = std::make_shared<Entry>(Entry{name, std::move(handler)});
    m_registry->entries.push_back(entry);
    // The token's deleter marks the entry, so that a delivery under way skips it, and then drops it.
    return Observation(std::shared_ptr<void>(entry.get(), [entry, registry = std::weak_ptr(m_registry)](void *) {
        entry->isActive = false;
        if (const auto alive = registry.lock()) {
            alive->prune();
        }
    }));
}

void NotificationCenter::post(const QString &name, const QVariantMap &userInfo) {
    std::vector<std::shared_ptr<Entry>> receivers;
    std::ranges::copy_if(m_registry->entries, std::back_inserter(receivers),
                         [&name](const auto &entry) { return entry->name == name; });
    const Notification notification{name, userInfo};
    for (const auto &receiver : receivers) {
        if (receiver->isActive) {
            receiver->handler(notification);
        }
    }
}

} // namespace tallowby
