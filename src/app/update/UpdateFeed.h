#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace tallowby {

/// A version that can be had, and the page where.
struct AvailableVersion {
    QString version;
    QUrl page;
};

/// Whether `signature`, in base64, is the Ed25519 signature of these bytes by the holder of `publicKey`, in base64.
[[nodiscard]] bool isSigned(const QByteArray &bytes, const QByteArray &signature, const QByteArray &publicKey);

/// The newest version of an appcast, an RSS feed whose items have a `version` and a `link`; items without a link to
/// https are passed over. None when it is no feed, or has no such item.
[[nodiscard]] std::optional<AvailableVersion> newestVersion(const QByteArray &feed);

/// Of versions of numbers; what is none is newer than nothing.
[[nodiscard]] bool isNewer(const QString &version, const QString &current);

} // namespace tallowby
