#include "app/update/UpdateFeed.h"

#include <QRegularExpression>
#include <QVersionNumber>
#include <QXmlStreamReader>

#include <sodium.h>

namespace tallowby {

namespace {

/// Numbers with dots and nothing else.
std::optional<QVersionNumber> parsed(const QString &version) {
    static const QRegularExpression kNumbers(QStringLiteral("^[0-9]{1,6}(\\.[0-9]{1,6}){0,3}$"));
    return kNumbers.match(version).hasMatch() ? std::optional(QVersionNumber::fromString(version).normalized())
                                              : std::nullopt;
}

std::optional<AvailableVersion> readItem(QXmlStreamReader &xml) {
    AvailableVersion item;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"version") {
            item.version = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        } else if (xml.name() == u"link") {
            item.page = QUrl(xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed(), QUrl::StrictMode);
        } else {
            xml.skipCurrentElement();
        }
    }
    const bool isUsable =
        parsed(item.version) && item.page.isValid() && item.page.scheme() == u"https" && !item.page.host().isEmpty();
    return isUsable ? std::optional(item) : std::nullopt;
}

} // namespace

bool isSigned(const QByteArray &bytes, const QByteArray &signature, const QByteArray &publicKey) {
    const auto key = QByteArray::fromBase64Encoding(publicKey.trimmed());
    const auto sign = QByteArray::fromBase64Encoding(signature.trimmed());
    if (!key || !sign || key.decoded.size() != crypto_sign_PUBLICKEYBYTES || sign.decoded.size() != crypto_sign_BYTES ||
        sodium_init() < 0) {
        return false;
    }
    const auto raw = [](const QByteArray &array) { return reinterpret_cast<const unsigned char *>(array.constData()); };
    return crypto_sign_verify_detached(raw(sign.decoded), raw(bytes), static_cast<unsigned long long>(bytes.size()),
                                       raw(key.decoded)) == 0;
}

std::optional<AvailableVersion> newestVersion(const QByteArray &feed) {
    QXmlStreamReader xml(feed);
    std::optional<AvailableVersion> newest;
    if (!xml.readNextStartElement() || xml.name() != u"rss" || !xml.readNextStartElement() ||
        xml.name() != u"channel") {
        return std::nullopt;
    }
    while (xml.readNextStartElement()) {
        if (xml.name() != u"item") {
            xml.skipCurrentElement();
            continue;
        }
        const std::optional<AvailableVersion> item = readItem(xml);
        if (item && (!newest || isNewer(item->version, newest->version))) {
            newest = item;
        }
    }
    return xml.hasError() ? std::nullopt : newest;
}

bool isNewer(const QString &version, const QString &current) {
    const auto offered = parsed(version);
    const auto here = parsed(current);
    return offered && here && *offered > *here;
}

} // namespace tallowby
