#include "model/SvgDecoding.h"

#include <QHash>
#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace tallowby {

namespace {

constexpr int kDeepest = 64;
/// Elements as drawn, those that are used again counted again.
constexpr qint64 kMostElements = 50'000;
/// In pixels, of a drawing that is asked for at its own size.
constexpr int kLongestDrawnSide = 4096;
/// Of all pictures in the drawing, in pixels.
constexpr qint64 kMostEmbeddedPixels = 16'000'000;

/// Counts the elements of a drawing with the parts that it uses, and finds what it must not have.
class SvgInspection {
public:
    /// Why the drawing is refused; none when it may be drawn.
    [[nodiscard]] std::optional<QString> refusalOf(const QByteArray &file);

private:
    struct Part {
        qint64 elements = 0;
        QStringList used;
    };

    [[nodiscard]] std::optional<QString> enter(const QXmlStreamReader &xml);
    [[nodiscard]] std::optional<QString> refusalOfReference(const QString &target);
    /// More than `kMostElements` for what is too much, or uses itself.
    [[nodiscard]] qint64 drawnElements(const QString &id);

    /// The whole drawing has no name.
    QHash<QString, Part> m_parts;
    QHash<QString, qint64> m_drawn;
    QSet<QString> m_beingCounted;
    /// The names of the elements around the current one.
    std::vector<QString> m_open;
    bool m_isInStyle = false;
    qint64 m_embeddedPixels = 0;
};

/// An escape may hide anything.
bool hasEscape(const QString &style) {
    return style.contains(u'\\');
}

bool reachesOut(const QString &style) {
    static const QRegularExpression kReference(QStringLiteral(R"(url\s*\(\s*["']?\s*[^#"'\s]|@import)"),
                                               QRegularExpression::CaseInsensitiveOption);
    return kReference.match(style).hasMatch();
}

QString outside() {
    return QStringLiteral("it refers to something outside itself");
}

QString tooMuch() {
    return QStringLiteral("it has more parts than can be drawn");
}

std::optional<QString> SvgInspection::refusalOfReference(const QString &target) {
    const QString reference = target.trimmed();
    if (reference.isEmpty() || reference.startsWith(u'#')) {
        return std::nullopt;
    }
    // The whole value: the drawing's reader takes what follows the last "base64," in it, whatever stands before that.
    static const QRegularExpression kEmbedded(
        QStringLiteral(R"(\Adata:image/(?:png|jpe?g|gif|webp);base64,([A-Za-z0-9+/=\s]*)\z)"));
    const auto embedded = kEmbedded.match(reference);
    if (!embedded.hasMatch()) {
        return outside();
    }
    const auto picture = QByteArray::fromBase64(embedded.capturedView(1).toLatin1());
    const DecodedPicture decoded = looksLikeSvg(picture) ? DecodedPicture{} : decodePicture(picture, 1);
    m_embeddedPixels += qint64(decoded.size.width()) * decoded.size.height();
    return decoded.image.isNull() || m_embeddedPixels > kMostEmbeddedPixels
               ? std::optional(QStringLiteral("it holds a picture that is too large or broken"))
               : std::nullopt;
}

std::optional<QString> SvgInspection::enter(const QXmlStreamReader &xml) {
    QString id;
    m_isInStyle = xml.name() == QLatin1StringView("style");
    for (const QXmlStreamAttribute &attribute : xml.attributes()) {
        const QString value = attribute.value().toString();
        if (attribute.name() == QLatin1StringView("id")) {
            id = value;
        } else if (attribute.name() != QLatin1StringView("href")) {
            if (reachesOut(value) || (attribute.name() == QLatin1StringView("style") && hasEscape(value))) {
                return outside();
            }
        } else if (xml.name() != QLatin1StringView("a")) {
            if (auto refusal = refusalOfReference(value)) {
                return refusal;
            }
            if (value.trimmed().startsWith(u'#')) {
                for (const QString &around : QSet(m_open.cbegin(), m_open.cend())) {
                    m_parts[around].used << value.trimmed().sliced(1);
                }
            }
        }
    }
    m_open.push_back(id);
    // A name that is there twice counts as both.
    for (const QString &around : QSet(m_open.cbegin(), m_open.cend())) {
        ++m_parts[around].elements;
    }
    return m_open.size() > kDeepest || m_parts[QString()].elements > kMostElements ? std::optional(tooMuch())
                                                                                   : std::nullopt;
}

qint64 SvgInspection::drawnElements(const QString &id) {
    if (const auto known = m_drawn.constFind(id); known != m_drawn.cend()) {
        return *known;
    }
    if (m_beingCounted.contains(id) || m_beingCounted.size() > kDeepest) {
        return kMostElements + 1;
    }
    m_beingCounted.insert(id);
    const Part part = m_parts.value(id);
    qint64 count = part.elements;
    for (const QString &used : part.used) {
        count = std::min(count + drawnElements(used), kMostElements + 1);
    }
    m_beingCounted.remove(id);
    m_drawn.insert(id, count);
    return count;
}

std::optional<QString> SvgInspection::refusalOf(const QByteArray &file) {
    QXmlStreamReader xml(file);
    m_open.push_back({});
    while (!xml.atEnd()) {
        std::optional<QString> refusal;
        switch (xml.readNext()) {
        case QXmlStreamReader::DTD:
            if (!xml.entityDeclarations().isEmpty()) {
                refusal = QStringLiteral("it declares entities");
            }
            break;
        case QXmlStreamReader::ProcessingInstruction:
            refusal = outside();
            break;
        case QXmlStreamReader::StartElement:
            refusal = enter(xml);
            break;
        case QXmlStreamReader::EndElement:
            m_open.pop_back();
            m_isInStyle = false;
            break;
        case QXmlStreamReader::Characters:
            if (m_isInStyle && (reachesOut(xml.text().toString()) || hasEscape(xml.text().toString()))) {
                refusal = outside();
            }
            break;
        default:
            break;
        }
        if (refusal) {
            return refusal;
        }
    }
    if (xml.hasError()) {
        return QStringLiteral("it cannot be decoded: ") + xml.errorString();
    }
    return drawnElements({}) > kMostElements ? std::optional(tooMuch()) : std::nullopt;
}

} // namespace

bool looksLikeSvg(const QByteArray &file) {
    const QByteArray start = file.first(std::min<qsizetype>(file.size(), 2048)).trimmed();
    return start.startsWith("<svg") ||
           ((start.startsWith("<?xml") || start.startsWith("<!") || start.startsWith("\xef\xbb\xbf<")) &&
            start.contains("<svg"));
}

DecodedPicture decodeSvg(const QByteArray &file, int longestSide) {
    const auto refused = [](const QString &why) { return DecodedPicture{.image = {}, .size = {}, .refusal = why}; };
    if (file.size() > kLargestSvgFile) {
        return refused(QStringLiteral("it is a drawing of more than 4 MiB"));
    }
    if (const auto refusal = SvgInspection().refusalOf(file)) {
        return refused(*refusal);
    }
    QSvgRenderer renderer;
    if (!renderer.load(file)) {
        return refused(QStringLiteral("it cannot be decoded"));
    }
    const QSizeF own = renderer.defaultSize();
    if (!(own.width() >= 1 && own.height() >= 1)) {
        return refused(QStringLiteral("it has no size"));
    }
    QSizeF drawn = own;
    const double side = longestSide > 0 ? longestSide : kLongestDrawnSide;
    if (longestSide > 0 || std::max(own.width(), own.height()) > side) {
        drawn.scale(side, side, Qt::KeepAspectRatio);
    }
    QImage image(drawn.toSize().expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return refused(QStringLiteral("there is not enough memory"));
    }
    image.fill(Qt::transparent);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    return {.image = std::move(image), .size = own.toSize(), .refusal = {}, .isScalable = true};
}

} // namespace tallowby
