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

bool openWebLink(const QUrl &url) {
    if (isWebLink(url) && QDesktopServices::openUrl(url)) {
        return true;
    }
    // Not which one: it is a part of a note.
    logLine(u"[Canvas] ⚠️ A link was not opened: nothing on this desktop takes it"_qs);
    return false;
}

} // namespace tallowby
