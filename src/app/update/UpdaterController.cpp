#include "app/update/UpdaterController.h"

#include "platform/Log.h"
#include "platform/WebLinks.h"

#include <utility>

namespace tallowby {

UpdateSource UpdateSource::ofThisBuild(const QString &programPath) {
    const bool isManaged = (programPath.startsWith(u"/usr/") && !programPath.startsWith(u"/usr/local/")) ||
                           programPath.startsWith(u"/app/") || programPath.startsWith(u"/nix/");
    UpdateSource source{QUrl(QStringLiteral(TALLOWBY_UPDATE_FEED), QUrl::StrictMode),
                        QByteArrayLiteral(TALLOWBY_UPDATE_KEY), isManaged};
    if (source.feed.scheme() != u"https" || source.publicKey.isEmpty()) {
        source.feed.clear();
    }
    return source;
}

UpdaterController::UpdaterController(const WindowServices &window, std::function<HttpClient &()> http,
                                     UpdateSource source, QString currentVersion)
    : WindowController(window, QStringLiteral("UpdateWindow"))
    , m_http(std::move(http))
    , m_source(std::move(source))
    , m_currentVersion(std::move(currentVersion)) {}

void UpdaterController::startUpdater() {
    check();
}

void UpdaterController::checkForUpdates() {
    check();
    show();
}

void UpdaterController::check() {
    if (m_state == State::checking) {
        return;
    }
    if (m_source.isManaged || m_source.feed.isEmpty()) {
        setState(m_source.isManaged ? State::managed : State::noSource);
        return;
    }
    setState(State::checking);
    get(m_source.feed, [this](const QByteArray &feed) {
        QUrl signature = m_source.feed;
        signature.setPath(signature.path() + QStringLiteral(".sig"));
        get(signature, [this, feed](const QByteArray &bytes) { judge(feed, bytes); });
    });
}

void UpdaterController::get(const QUrl &url, const Received &received) {
    HttpRequest request{HttpRequest::Method::get, url, {}, {}};
    request.maxAnswer = kLongestFeed;
    m_exchange = m_http().send(std::move(request), [this, received](const HttpAnswer &answer) {
        const auto *response = std::get_if<HttpResponse>(&answer);
        if (!response) {
            fail(tr("The server could not be reached. Try again later."), std::get<HttpFailure>(answer).description);
        } else if (!response->isSuccess()) {
            fail(tr("The server gave no answer that can be used. Try again later."),
                 QStringLiteral("status %1").arg(response->status));
        } else {
            received(response->body);
        }
    });
}

void UpdaterController::judge(const QByteArray &feed, const QByteArray &signature) {
    const QString distrust = tr("What the server answered is not from the makers of Tallowby, so it was not used.");
    if (!isSigned(feed, signature, m_source.publicKey)) {
        fail(distrust, QStringLiteral("the signature of the feed is wrong"));
        return;
    }
    const std::optional<AvailableVersion> newest = newestVersion(feed);
    if (!newest) {
        fail(tr("The server gave no answer that can be used. Try again later."),
             QStringLiteral("the feed names no version"));
        return;
    }
    if (!isNewer(newest->version, m_currentVersion)) {
        setState(State::upToDate);
        return;
    }
    m_available = newest;
    setState(State::available);
    show();
}

void UpdaterController::fail(const QString &why, const QString &forTheLog) {
    logLine(QString(u"[UpdaterController] ❌ Update check failed: " + forTheLog));
    m_why = why;
    setState(State::failed);
}

void UpdaterController::setState(State state) {
    m_state = state;
    Q_EMIT stateChanged();
}

QString UpdaterController::title() const {
    switch (m_state) {
    case State::idle:
    case State::checking:
        return tr("Looking for updates…");
    case State::upToDate:
        return tr("Tallowby is up to date.");
    case State::available:
        return tr("Tallowby %1 is here.").arg(m_available->version);
    case State::failed:
        return tr("The check for updates failed.");
    case State::managed:
        return tr("Your system keeps Tallowby up to date.");
    case State::noSource:
        return tr("This build has no place to look for updates.");
    }
    return {};
}

QString UpdaterController::details() const {
    switch (m_state) {
    case State::idle:
    case State::checking:
        return {};
    case State::upToDate:
        return tr("Version %1 is the newest.").arg(m_currentVersion);
    case State::available:
        return tr("You have version %1. Nothing is installed by itself: the page of the new version says how to get "
                  "it.")
            .arg(m_currentVersion);
    case State::failed:
        return m_why;
    case State::managed:
        return tr("Version %1 was installed by a package manager, which brings the next one, too.")
            .arg(m_currentVersion);
    case State::noSource:
        return tr("You have version %1, built by hand.").arg(m_currentVersion);
    }
    return {};
}

void UpdaterController::openPage() const {
    if (m_available) {
        openWebLink(m_available->page);
    }
}

} // namespace tallowby
