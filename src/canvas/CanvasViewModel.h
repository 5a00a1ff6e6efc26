#pragma once

#include "canvas/VisibleBlocksModel.h"
#include "model/Block.h"
#include "platform/NotificationCenter.h"

#include <QObject>
#include <QQmlEngine>
#include <QRectF>

#include <optional>
#include <vector>

namespace tallowby {

class BlockStorage;
class DebouncedSaver;
class Scheduler;

/// The one model behind the infinite canvas: the live blocks in paint order, those in view, the order of depth, the
/// selection and the block that has the keyboard. Every change that a person makes goes through it and is stamped,
/// marked for upload and handed to the storage. Main thread only.
class CanvasViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The composition root makes it")
    Q_PROPERTY(tallowby::VisibleBlocksModel *visibleBlocksModel READ visibleBlocksModel CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY blocksChanged)
    Q_PROPERTY(QUuid focusedBlockId READ focusedBlockId NOTIFY focusedBlockIdChanged)
    Q_PROPERTY(bool isAnyBlockEditing READ isAnyBlockEditing NOTIFY isAnyBlockEditingChanged)

public:
    /// On every side of the viewport, in screen points at any zoom.
    static constexpr double kCullingMargin = 200;
    /// Blocks count as at least this large when the view is culled: one that has not measured itself yet is kept.
    static constexpr QSizeF kSmallestCulledSize{100, 50};
    static constexpr QSizeF kSpawnedTextSize{100, 24};
    /// In characters. A longer text is kept whole and shown, but not opened: laying it out would hold up everything
    /// else for seconds.
    static constexpr qsizetype kLongestEditedText = 200'000;

    CanvasViewModel(BlockStorage &storage, DebouncedSaver &saver, NotificationCenter &notifications,
                    const Scheduler &scheduler);

    /// Live blocks; later ones are drawn above earlier ones.
    [[nodiscard]] const std::vector<BlockPtr> &blocks() const { return m_blocks; }
    [[nodiscard]] const std::vector<BlockPtr> &visibleBlocks() const { return m_visibleBlocks.blocks(); }
    [[nodiscard]] VisibleBlocksModel *visibleBlocksModel() { return &m_visibleBlocks; }
    [[nodiscard]] bool isEmpty() const { return m_blocks.empty(); }
    [[nodiscard]] const std::vector<BlockPtr> &selectedBlocks() const { return m_selectedBlocks; }
    /// The topmost visible block whose turned rectangle holds the canvas point, or null.
    [[nodiscard]] BlockPtr blockAt(QPointF canvasPoint) const;

    /// The block whose editor has the keyboard; a null id for none.
    [[nodiscard]] QUuid focusedBlockId() const { return m_focusedBlock ? m_focusedBlock->id() : QUuid(); }
    [[nodiscard]] const BlockPtr &focusedBlock() const { return m_focusedBlock; }
    [[nodiscard]] bool isAnyBlockEditing() const { return m_focusedBlock != nullptr; }
    /// The block that `spawnBlock` is putting on the canvas right now.
    [[nodiscard]] bool isSpawning(const Block &block) const { return m_spawningBlock == &block; }

    /// A new block around the point: stored, on top of all others, the only selected one, open for editing. Null, and
    /// nothing done, for a kind that a person cannot make on the canvas.
    BlockPtr spawnBlock(QPointF at, BlockType type, const QString &initialText);
    /// Soft: the block stays in the storage until its deletion has been uploaded.
    void deleteBlock(const BlockPtr &block);
    void deleteSelected();
    void moveSelectedBlocks(double dx, double dy);
    void bringToFront(const BlockPtr &block);

    /// Opens the block for editing, in front of all others and selected alone, and among the visible ones. Ends other
    /// editing first. Selects only when the block's text is too long.
    void beginEditing(const BlockPtr &block);
    /// A text block that was left without any text is removed, so that a stray key leaves nothing behind.
    void endEditing();
    /// What the user has typed into the block so far.
    void setText(Block &block, const QString &text);
    /// The frame that a block's body takes up by itself; no edit of the user's, so it is neither stamped nor uploaded.
    void settleFrame(Block &block, const QRectF &frame);

    void selectOnly(const BlockPtr &block);
    void toggleSelection(const BlockPtr &block);
    void selectAll();
    void deselectAll();

    /// Reloads the blocks from the storage. Shows those in the viewport that was last told, or all when none was.
    void refreshBlocks();
    /// `viewport` in canvas points; `scale` in screen points per canvas point. A block that is being edited stays, so
    /// that typing goes on when it is panned out of sight.
    void updateVisibleBlocks(const QRectF &viewport, double scale);

Q_SIGNALS:
    void blocksChanged();
    void focusedBlockIdChanged();
    void isAnyBlockEditingChanged();

private:
    [[nodiscard]] std::optional<std::size_t> indexOf(const Block &block) const;
    [[nodiscard]] std::vector<BlockPtr> blocksInViewport() const;
    [[nodiscard]] Timestamp now() const;
    [[nodiscard]] std::int64_t takeTopZIndex();
    void softDelete(const std::vector<BlockPtr> &blocks);
    void markEdited(Block &block) const;
    void setFocusedBlock(const BlockPtr &block);

    BlockStorage &m_storage;
    DebouncedSaver &m_saver;
    const Scheduler &m_scheduler;
    std::vector<BlockPtr> m_blocks;
    /// The frame of each block, in the order of `m_blocks`: side by side in memory, a hundred thousand are gone through
    /// in a fraction of a millisecond.
    std::vector<QRectF> m_frames;
    VisibleBlocksModel m_visibleBlocks;
    std::vector<BlockPtr> m_selectedBlocks;
    std::optional<QRectF> m_culledRect;
    std::int64_t m_maxZIndex = 0;
    BlockPtr m_focusedBlock;
    const Block *m_spawningBlock = nullptr;
    NotificationCenter::Observation m_deselectObservation;
};

} // namespace tallowby
