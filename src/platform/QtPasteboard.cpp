#include "platform/QtPasteboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>

#include <memory>

namespace tallowby {

namespace {

/// Null while another program that owns the clipboard does not answer.
const QMimeData *clipboardData() {
    return QGuiApplication::clipboard()->mimeData();
}

/// Qt's name for pixels; it makes of them whatever format another program asks for.
const QString kPixelsType = QStringLiteral("application/x-qt-image");

/// Most programs take the file as it is, so that no pixel is decoded before one asks.
class PictureData final : public QMimeData {
public:
    explicit PictureData(const PasteboardPicture &picture)
        : m_decode(picture.decode) {
        setData(picture.mimeType, picture.file);
    }

    [[nodiscard]] QStringList formats() const override {
        return m_decode ? QMimeData::formats() << kPixelsType : QMimeData::formats();
    }

protected:
    [[nodiscard]] QVariant retrieveData(const QString &mimeType, QMetaType type) const override {
        if (mimeType != kPixelsType || !m_decode) {
            return QMimeData::retrieveData(mimeType, type);
        }
        if (m_pixels.isNull()) {
            m_pixels = m_decode();
        }
        return m_pixels;
    }

private:
    std::function<QImage()> m_decode;
    mutable QImage m_pixels;
};

} // namespace

QList<QUrl> QtPasteboard::fileUrls() const {
    const QMimeData *content = clipboardData();
    QList<QUrl> urls = content ? content->urls() : QList<QUrl>();
    urls.removeIf([](const QUrl &url) { return !url.isLocalFile(); });
    return urls;
}

QByteArray QtPasteboard::imageBytes() const {
    const QMimeData *content = clipboardData();
    if (!content || !content->hasImage()) {
        return {};
    }
    // The bytes as the other program has them: this process decodes no picture from outside.
    QStringList formats = content->formats().filter(QRegularExpression(QStringLiteral("^image/")));
    for (const QString &format : {QStringLiteral("image/gif"), QStringLiteral("image/webp"),
                                  QStringLiteral("image/jpeg"), QStringLiteral("image/png")}) {
        if (formats.removeOne(format)) {
            formats.prepend(format);
        }
    }
    if (!formats.isEmpty()) {
        return content->data(formats.front());
    }
    // The pixels are this program's own.
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    content->imageData().value<QImage>().save(&buffer, "PNG");
    return png;
}

QString QtPasteboard::text() const {
    const QMimeData *content = clipboardData();
    return content ? content->text() : QString();
}

QByteArray QtPasteboard::data(const QString &mimeType) const {
    const QMimeData *content = clipboardData();
    return content ? content->data(mimeType) : QByteArray();
}

void QtPasteboard::write(const PasteboardContent &content) {
    auto mimeData = content.picture ? std::unique_ptr<QMimeData>(std::make_unique<PictureData>(*content.picture))
                                    : std::make_unique<QMimeData>();
    if (!content.text.isEmpty()) {
        mimeData->setText(content.text);
    }
    for (const auto &[mimeType, bytes] : content.data) {
        mimeData->setData(mimeType, bytes);
    }
    QGuiApplication::clipboard()->setMimeData(mimeData.release());
}

} // namespace tallowby
