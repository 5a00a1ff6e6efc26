#include "canvas/container/ResizeGesture.h"

#include "canvas/model/CanvasViewModel.h"
#include "storage/ImageCacheService.h"

#include <QTransform>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

/// Height by width. A picture that nobody has seen yet has the proportions of its block.
std::optional<double> aspectRatioOf(const Block &block) {
    if (block.blockType() != BlockType::image) {
        return std::nullopt;
    }
    const auto known = ImageCacheService::shared().pictureSize(block.id());
    const QSizeF size = known ? QSizeF(*known) : QSizeF(block.width(), block.height());
    return size.isEmpty() ? std::nullopt : std::optional(size.height() / size.width());
}

} // namespace

QPointF directionOf(Corner corner) {
    const bool isLeft = corner == Corner::topLeft || corner == Corner::bottomLeft;
    const bool isTop = corner == Corner::topLeft || corner == Corner::topRight;
    return {isLeft ? -1.0 : 1.0, isTop ? -1.0 : 1.0};
}

ResizeGesture::ResizeGesture(BlockPtr block, Corner corner)
    : m_block(std::move(block))
    , m_corner(corner)
    , m_dragInitialPos(m_block->xPosition(), m_block->yPosition())
    , m_resizeInitialSize(m_block->width(), m_block->height())
    , m_rotation(m_block->rotation())
    , m_cachedAspectRatio(aspectRatioOf(*m_block)) {}

QRectF ResizeGesture::frameAt(QPointF translation) const {
    const QTransform turned = QTransform().rotate(m_rotation);
    const QPointF direction = directionOf(m_corner);
    const QPointF along = turned.inverted().map(translation);
    QSizeF size = m_resizeInitialSize + QSizeF(direction.x() * along.x(), direction.y() * along.y());
    size = size.expandedTo(kSmallestSize);
    if (m_cachedAspectRatio) {
        size.setHeight(size.width() * *m_cachedAspectRatio);
    }
    const QSizeF growth = size - m_resizeInitialSize;
    const QPointF shift(direction.x() < 0 ? -growth.width() : 0, direction.y() < 0 ? -growth.height() : 0);
    QRectF frame(m_dragInitialPos + shift, size);
    if (m_rotation != 0) {
        // The frame turns about its own middle, which has moved along the block's axes and not the canvas's.
        const QPointF middle = initialFrame().center();
        frame.moveCenter(middle + turned.map(frame.center() - middle));
    }
    return frame;
}

void ResizeGesture::change(CanvasViewModel &viewModel, QPointF translation) {
    viewModel.setFrameDuringGesture(*m_block, frameAt(translation));
}

void ResizeGesture::end(CanvasViewModel &viewModel, QPointF translation) {
    if (translation.isNull()) {
        // Pulled back to where it was; the smallest size is no reason to change the block.
        cancel(viewModel);
        return;
    }
    const QRectF frame = frameAt(translation);
    viewModel.setFrameDuringGesture(*m_block, frame);
    viewModel.commitTransform(m_block, initialFrame(), frame);
}

void ResizeGesture::cancel(CanvasViewModel &viewModel) {
    viewModel.setFrameDuringGesture(*m_block, initialFrame());
}

} // namespace tallowby
