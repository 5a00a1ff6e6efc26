#include "storage/ImageCacheService.h"

#include <algorithm>

namespace tallowby {

namespace {

constexpr qint64 kBytesPerPixel = 4;

} // namespace

ImageCacheService &ImageCacheService::shared() {
    static ImageCacheService cache;
    return cache;
}

QImage ImageCacheService::image(QUuid blockId) {
    const auto found = std::ranges::find(m_cache, blockId, &Entry::blockId);
    if (found == m_cache.end()) {
        return {};
    }
    std::rotate(found, found + 1, m_cache.end());
    return m_cache.back().image;
}

void ImageCacheService::set(const QImage &image, QUuid blockId) {
    const auto removeAt = [this](std::vector<Entry>::iterator entry) {
        m_totalCost -= entry->cost;
        m_cache.erase(entry);
    };
    if (const auto known = std::ranges::find(m_cache, blockId, &Entry::blockId); known != m_cache.end()) {
        removeAt(known);
    }
    const qint64 cost = kBytesPerPixel * image.width() * image.height();
    if (image.isNull() || cost > kTotalCostLimit) {
        return;
    }
    while (m_cache.size() >= kCountLimit || m_totalCost + cost > kTotalCostLimit) {
        removeAt(m_cache.begin());
    }
    m_cache.push_back({blockId, image, cost});
    m_totalCost += cost;
}

std::optional<QSize> ImageCacheService::pictureSize(QUuid blockId) const {
    const auto known = m_sizes.constFind(blockId);
    return known == m_sizes.cend() ? std::nullopt : std::optional(*known);
}

void ImageCacheService::setPictureSize(QSize size, QUuid blockId) {
    m_sizes.insert(blockId, size);
}

} // namespace tallowby
