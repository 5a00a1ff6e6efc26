#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>
#include <utility>

namespace tallowby {

/// A picture as its file has it.
struct PasteboardPicture {
    QByteArray file;
    /// Of the file.
    QString mimeType;
    /// Asked when another program wants pixels, until there are some; none when the file says it all.
    std::function<QImage()> decode;
};

/// What is put on the pasteboard in one go; what is empty is left out.
struct PasteboardContent {
    QString text;
    std::optional<PasteboardPicture> picture;
    /// MIME types with their bytes.
    QList<std::pair<QString, QByteArray>> data;
};

/// The general pasteboard, which all programs share. What comes from it is another program's and nothing of it is
/// checked. Main thread only; reading waits for the program that owns the content.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Files of this machine, in order.
    [[nodiscard]] virtual QList<QUrl> fileUrls() const = 0;
    /// The bytes of a picture, encoded as a file would be; a picture that comes without such bytes as PNG.
    [[nodiscard]] virtual QByteArray imageBytes() const = 0;
    [[nodiscard]] virtual QString text() const = 0;
    /// The bytes under a MIME type; empty for none.
    [[nodiscard]] virtual QByteArray data(const QString &mimeType) const = 0;

    virtual void write(const PasteboardContent &content) = 0;
};

} // namespace tallowby
