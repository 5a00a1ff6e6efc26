#include "platform/WebLinks.h"

#include "platform/Log.h"

#include <QDesktopServices>
#include <QUrl>

namespace tallowby {

bool isWebLink(const QUrl &url) {
    const QString scheme = url.scheme();
    const bool isWeb = scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https");
    return url.isValid() &&
           (isWeb ? !url.host().isEmpty() : scheme == QLatin1StringView("mailto") && url.path().contains(u'@'));
}

void openWebLink(const QUrl &url) {
    if (!isWebLink(url) || !QDesktopServices::openUrl(url)) {
        logLine(u"[Canvas] ⚠️ The link was not opened: %1"_qs.arg(url.toDisplayString()));
    }
}

} // namespace tallowby
