#pragma once

#include "app/shell/WindowController.h"
#include "app/update/UpdateFeed.h"
#include "sync/HttpClient.h"

#include <functional>
#include <optional>

namespace tallowby {

/// Where a build looks for newer ones.
struct UpdateSource {
    /// Its signature lies beside it, under the same address with `.sig` at the end. Empty for none.
    QUrl feed;
    /// Ed25519, in base64.
    QByteArray publicKey;
    /// A package manager installed the program, and is the one to update it.
    bool isManaged = false;

    /// What was built in, for a program of that path.
    [[nodiscard]] static UpdateSource ofThisBuild(const QString &programPath);
};

/// Looks for newer versions and tells of them, in a window of its own; it never installs anything. Main thread only.
class UpdaterController : public WindowController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString title READ title NOTIFY stateChanged)
    Q_PROPERTY(QString details READ details NOTIFY stateChanged)

public:
    enum class State {
        idle,
        checking,
        upToDate,
        available,
        failed,
        managed,
        noSource,
    };
    Q_ENUM(State)

    /// Longer than any feed of ours; what is longer is not looked at.
    static constexpr qsizetype kLongestFeed = 1'000'000;

    /// `http` is asked for with the first request, and what it gives outlives this object.
    UpdaterController(const WindowServices &window, std::function<HttpClient &()> http, UpdateSource source,
                      QString currentVersion);

    /// At launch: only a newer version opens the window.
    void startUpdater();
    /// The user asked.
    void checkForUpdates();

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString details() const;
    [[nodiscard]] const std::optional<AvailableVersion> &available() const { return m_available; }
    Q_INVOKABLE void checkAgain() { check(); }
    /// The newer version, in the browser.
    Q_INVOKABLE void openPage() const;

Q_SIGNALS:
    void stateChanged();

private:
    using Received = std::function<void(const QByteArray &)>;

    void check();
    void get(const QUrl &url, const Received &received);
    void judge(const QByteArray &feed, const QByteArray &signature);
    void fail(const QString &why, const QString &forTheLog);
    void setState(State state);

    const std::function<HttpClient &()> m_http;
    const UpdateSource m_source;
    const QString m_currentVersion;
    State m_state = State::idle;
    std::optional<AvailableVersion> m_available;
    QString m_why;
    std::unique_ptr<HttpExchange> m_exchange;
};

} // namespace tallowby
