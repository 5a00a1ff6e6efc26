#pragma once

#include <QHash>
#include <QImage>
#include <QSize>
#include <QUuid>

#include <optional>
#include <vector>

namespace tallowby {

/// Keeps the decoded pictures of image blocks, so that one that comes back into view is shown at once. What was not
/// asked for the longest goes first. A block's picture is replaced only by `set`: whoever changes the payload of a
/// block that is shown says so. Main thread only.
class ImageCacheService {
public:
    static constexpr std::size_t kCountLimit = 20;
    /// In bytes; a single picture that takes more is not kept.
    static constexpr qint64 kTotalCostLimit = qint64(40) * 1024 * 1024;
    /// The one of this process.
    [[nodiscard]] static ImageCacheService &shared();

    /// Null when the block has none here.
    [[nodiscard]] QImage image(QUuid blockId);
    void set(const QImage &image, QUuid blockId);
    /// The proportions of the block's picture in its own pixels, known once it has been decoded and kept after the
    /// picture has gone from here. Empty when it has none that can be shown; none when nobody knows yet.
    [[nodiscard]] std::optional<QSize> pictureSize(QUuid blockId) const;
    void setPictureSize(QSize size, QUuid blockId);

private:
    struct Entry {
        QUuid blockId;
        QImage image;
        qint64 cost = 0;
    };

    /// The one asked for last is at the end.
    std::vector<Entry> m_cache;
    qint64 m_totalCost = 0;
    QHash<QUuid, QSize> m_sizes;
};

} // namespace tallowby
