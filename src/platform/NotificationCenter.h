#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

namespace tallowby {

/// What an observer is handed: the name that was posted and its user info.
struct Notification {
    QString name;
    QVariantMap userInfo;
};

/// Signals between components that are not in a direct line, by name. Main thread only. An observer is called on the
/// poster's stack, before `post` returns; observers of one name are called in the order in which they registered. An
/// observer that is removed during a delivery is not called any more; one that is added during it waits for the next.
class NotificationCenter {
public:
    using Handler = std::function<void(const Notification &)>;

    /// Ends the observation when it dies; may outlive the centre.
    class Observation {
    public:
        Observation() = default;
        Observation(Observation &&) noexcept = default;
        Observation &operator=(Observation &&other) noexcept;
        ~Observation();
        void stop();
        [[nodiscard]] bool isActive() const { return static_cast<bool>(m_token); }

    private:
        friend class NotificationCenter;
        explicit Observation(std::shared_ptr<void> token)
            : m_token(std::move(token)) {}
        std::shared_ptr<void> m_token;
    };

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;

    [[nodiscard]] Observation observe(const QString &name, Handler handler);
    void post(const QString &name, const QVariantMap &userInfo = {});

private:
    struct Registry;
    std::shared_ptr<Registry> m_registry;
};

} // namespace tallowby
