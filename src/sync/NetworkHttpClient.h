#pragma once

#include "platform/Scheduler.h"
#include "sync/HttpClient.h"

#include <QNetworkAccessManager>

namespace tallowby {

/// HTTP over the platform's network stack, version 2 where the server has it. Redirects are not followed, so that no
/// key ever reaches another host; no cookies, no stored credentials; certificates are checked.
class NetworkHttpClient : public HttpClient {
public:
    /// The longest silence between two parts of a request or its answer.
    static constexpr std::chrono::seconds kLongestSilence{30};
    /// For a whole request. One that has moved `kWorthwhile` bytes in that time gets as long again: a large picture on
    /// a slow line arrives, a server that drips does not hold us.
    static constexpr std::chrono::seconds kLongestRequest{60};
    static constexpr qint64 kWorthwhile = 256 * 1024;

    explicit NetworkHttpClient(Scheduler &scheduler);

    [[nodiscard]] std::unique_ptr<HttpExchange> send(HttpRequest request, Done done) override;

private:
    Scheduler &m_scheduler;
    QNetworkAccessManager m_network;
};

} // namespace tallowby
