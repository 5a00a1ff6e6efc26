#pragma once

#include <QImage>
#include <QUuid>

#include <vector>

namespace tallowby {

class Block;

/// Keeps the decoded pictures of image blocks, so that one that comes back into view is shown at once. What was not
/// asked for the longest goes first. A block's picture is replaced only by `set`: whoever changes the payload of a
/// block that is shown says so. Main thread only.
class ImageCacheService {
public:
    static constexpr std::size_t kCountLimit = 20;
    /// In bytes; a single picture that takes more is not kept.
    static constexpr qint64 kTotalCostLimit = qint64(40) * 1024 * 1024;
    /// The longest side to which a picture is decoded here.
    static constexpr int kLongestSide = 2048;

    /// The one of this process.
    [[nodiscard]] static ImageCacheService &shared();

    /// Null when the block has none here.
    [[nodiscard]] QImage image(QUuid blockId);
    void set(const QImage &image, QUuid blockId);
    /// The picture that a block shows, decoded now if it has to be; null when it has none or it does not decode.
    [[nodiscard]] QImage uiImage(const Block &block);

private:
    struct Entry {
        QUuid blockId;
        QImage image;
        qint64 cost = 0;
    };

    /// The one asked for last is at the end.
    std::vector<Entry> m_cache;
    qint64 m_totalCost = 0;
};

} // namespace tallowby
