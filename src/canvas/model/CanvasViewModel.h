#pragma once

#include "canvas/model/CanvasTool.h"
#include "canvas/model/LiveBlocks.h"
#include "canvas/model/UndoHistory.h"
#include "canvas/model/VisibleBlocksModel.h"
#include "canvas/pasteboard/PictureIntake.h"
#include "model/Block.h"
#include "platform/NotificationCenter.h"

#include <QObject>
#include <QQmlEngine>
#include <QRectF>

#include <optional>
#include <span>
#include <vector>

namespace tallowby {

class AnyCodable;
class BlockStorage;
class DebouncedSaver;
class Pasteboard;
class Scheduler;

/// The one model behind the infinite canvas: the live blocks in paint order, those in view, the order of depth, the
/// selection, the tool in hand, the block that has the keyboard, and the history. Every change that a person makes goes
/// through it and is stamped, marked for upload and handed to the storage. Points are canvas points unless said
/// otherwise. Main thread only.
class CanvasViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The composition root makes it")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY blocksChanged)
    Q_PROPERTY(int selectionCount READ selectionCount NOTIFY selectionChanged)
    Q_PROPERTY(QUuid focusedBlockId READ focusedBlockId NOTIFY focusedBlockIdChanged)
    Q_PROPERTY(bool isAnyBlockEditing READ isAnyBlockEditing NOTIFY isAnyBlockEditingChanged)
    Q_PROPERTY(tallowby::CanvasTool activeTool READ activeTool WRITE setActiveTool NOTIFY activeToolChanged)
    Q_PROPERTY(bool toolLocked READ toolLocked WRITE setToolLocked NOTIFY toolLockedChanged)
    Q_PROPERTY(QString pencilColor READ pencilColor WRITE setPencilColor NOTIFY pencilColorChanged)
    Q_PROPERTY(double pencilWidth READ pencilWidth WRITE setPencilWidth NOTIFY pencilWidthChanged)
    Q_PROPERTY(QPointF rightClickCursorPos READ rightClickCursorPos WRITE setRightClickCursorPos NOTIFY
                   rightClickCursorPosChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY canRedoChanged)

public:
    /// On every side of the viewport, in screen points at any zoom.
    static constexpr double kCullingMargin = 200;
    /// Blocks count as at least this large when the view is culled: one that has not measured itself yet is kept.
    static constexpr QSizeF kSmallestCulledSize{100, 50};
    static constexpr QSizeF kSpawnedTextSize{100, 24};
    /// From the corner of a spawned text to the point that it is spawned at.
    static constexpr QPointF kSpawnedTextCorner{50, 12};
    /// In characters. A longer text is kept whole and shown, but not opened: laying it out would hold up everything
    /// else for seconds.
    static constexpr qsizetype kLongestEditedText = 200'000;
    /// From a block to its copy, in both directions.
    static constexpr double kDuplicateOffset = 30;
    /// What a pasted or dropped picture is shown at, at most; its pixels are kept as they are.
    static constexpr double kWidestPicture = 350;
    static constexpr QSizeF kDrawnShapeSize{120, 80};
    static constexpr QSizeF kSpawnedLineSize{150, 20};
    /// A shape drawn smaller than this on both sides was a click.
    static constexpr double kSmallestDrawnShape = 8;
    /// Between the strokes and the edge of their block.
    static constexpr double kSketchPadding = 40;

    CanvasViewModel(BlockStorage &storage, DebouncedSaver &saver, NotificationCenter &notifications,
                    Scheduler &scheduler, Pasteboard &pasteboard);

    [[nodiscard]] Scheduler &scheduler() const { return m_scheduler; }

    /// Live blocks; later ones are drawn above earlier ones.
    [[nodiscard]] const std::vector<BlockPtr> &blocks() const { return m_live.inPaintOrder(); }
    [[nodiscard]] const std::vector<BlockPtr> &visibleBlocks() const { return m_visibleBlocks.blocks(); }
    [[nodiscard]] VisibleBlocksModel *visibleBlocksModel() { return &m_visibleBlocks; }
    [[nodiscard]] bool isEmpty() const { return blocks().empty(); }
    /// Reloads the blocks from the storage. Shows those in the viewport that was last told, or all when none was.
    void refreshBlocks();
    /// `viewport` in canvas points; `scale` in screen points per canvas point. A block that is being edited stays, so
    /// that typing goes on when it is panned out of sight.
    void updateVisibleBlocks(const QRectF &viewport, double scale);
    /// These are drawn that far from where they are, for as long as they are dragged, and visible there. No blocks ends
    /// that; what is visible then is found anew when the viewport changes.
    void showShifted(const std::vector<BlockPtr> &shifted, QPointF offset);

    /// The topmost visible block whose turned rectangle holds the canvas point, or null.
    [[nodiscard]] BlockPtr blockAt(QPointF canvasPoint) const;
    /// Those whose turned rectangle has a point in common with `rect`, in view or not, in paint order.
    [[nodiscard]] std::vector<BlockPtr> blocksIn(const QRectF &rect) const;
    enum class ReadingDirection { forward, backward };
    /// The block that is read after (or before) `from`, going round at the ends; the first (or last) for null. Null on
    /// an empty canvas.
    [[nodiscard]] BlockPtr nextInReadingOrder(const BlockPtr &from, ReadingDirection direction) const;

    // Tools.
    [[nodiscard]] CanvasTool activeTool() const { return m_activeTool; }
    void setActiveTool(const CanvasTool &tool);
    /// Whether a tool stays in hand after one use; whoever uses it puts it away.
    [[nodiscard]] bool toolLocked() const { return m_toolLocked; }
    void setToolLocked(bool isLocked);
    /// Of new strokes.
    [[nodiscard]] const QString &pencilColor() const { return m_pencilColor; }
    void setPencilColor(const QString &color);
    [[nodiscard]] double pencilWidth() const { return m_pencilWidth; }
    void setPencilWidth(double width);
    /// Where the last right click landed.
    [[nodiscard]] QPointF rightClickCursorPos() const { return m_rightClickCursorPos; }
    void setRightClickCursorPos(QPointF canvasPoint);

    // Selection.
    /// In the order of their selecting.
    [[nodiscard]] const std::vector<BlockPtr> &selectedBlocks() const { return m_selectedBlocks; }
    [[nodiscard]] int selectionCount() const { return int(m_selectedBlocks.size()); }
    void selectOnly(const BlockPtr &block);
    void toggleSelection(const BlockPtr &block);
    /// Those that are live, and no others.
    void select(std::vector<BlockPtr> blocks);
    void selectAll();
    void deselectAll();
    /// Selects the blocks that the rectangle touches and those of `kept`, and no others. For a rectangle that adds to a
    /// selection, `kept` is the selection as it was when the rectangle began.
    void selectIn(const QRectF &marquee, const std::vector<BlockPtr> &kept = {});

    // Editing.
    /// The block whose editor has the keyboard; a null id for none.
    [[nodiscard]] QUuid focusedBlockId() const { return m_focusedBlock ? m_focusedBlock->id() : QUuid(); }
    [[nodiscard]] const BlockPtr &focusedBlock() const { return m_focusedBlock; }
    [[nodiscard]] bool isAnyBlockEditing() const { return m_focusedBlock != nullptr; }
    /// Opens the block for editing, in front of all others and selected alone, and among the visible ones. Ends other
    /// editing first. Selects only when the block's text is too long.
    void beginEditing(BlockPtr block);
    /// A text that has changed since its editing began is recorded for undo. A text block that was left without any
    /// text is removed: a new one as if it had never been, an older one with the text that it had, which undo brings
    /// back.
    void endEditing();
    /// What the user has typed into the block so far.
    void setText(Block &block, const QString &text);
    /// What the user has changed in the block's payload so far.
    void setContentField(Block &block, const QString &key, const AnyCodable &value);
    // Looks. None of these is recorded for undo, but `resizeAboutMiddle`. An equal value changes nothing.
    enum class TextStyle { bold, italic, strikethrough };
    void setTextStyle(Block &block, TextStyle style, bool isOn);
    void setFontSize(Block &block, double points);
    void setTextColor(Block &block, const QString &color);
    /// Of a sticky note, in its payload too.
    void setNotePaper(Block &block, const QString &name);
    /// All strokes of a sketch, whose frame stays.
    void restyleStrokes(Block &block, const std::optional<QString> &color, std::optional<double> width);
    void resizeAboutMiddle(const BlockPtr &block, QSizeF size);

    /// The frame that a block's body takes up by itself; no edit of the user's, so it is neither stamped nor uploaded.
    void settleFrame(Block &block, const QRectF &frame);

    // New blocks. Each is stored, on top of all others, and the only selected one.
    /// A block of any kind around the point, open for editing, recorded for undo. `initialText` is for the kind text.
    BlockPtr spawnBlock(QPointF at, BlockType type, const QString &initialText = {});
    /// Around the point, recorded for undo; what is being edited stays so.
    BlockPtr spawnShape(QPointF at, ShapeType shapeType);
    BlockPtr spawnIcon(QPointF at, const QString &iconName);
    /// The block that one of the above is putting on the canvas right now.
    [[nodiscard]] bool isSpawning(const Block &block) const { return m_spawningBlock == &block; }
    /// An upright copy beside the block; a text is opened for editing. Not recorded: a copy goes with Delete.
    void duplicateBlock(BlockPtr block);
    /// Copies of all selected blocks, which are selected then; with more than one none is opened.
    void duplicateSelected();

    // The pasteboard and files.
    /// Inserts what the pasteboard holds around the point: blocks of this program, else the picture in the first file,
    /// else a picture, else a text. An empty image block that is selected alone takes the picture. A picture arrives a
    /// little later, once it has been looked at, wherever the canvas is by then; one that is refused asks for a notice.
    void handlePaste(QPointF at);
    /// A picture block around the point that carries the bytes as they are, a little later. Neither selected nor
    /// recorded for undo. Bytes that are not a picture, or one that does not decode, insert nothing.
    void processAndInsertImage(const QByteArray &data, QPointF at);
    /// Puts the picture of a file into an image block, which takes its shape, a little later. Not recorded for undo. If
    /// the block has gone or has a picture by then, the picture becomes a block of its own.
    void fillPicture(const Block &block, const QUrl &file);
    /// One value of the block's payload; what else the payload holds stays. Not recorded for undo.
    void setPayloadValue(Block &block, const QString &key, const AnyCodable &value);
    /// Pictures from dropped files, in their order, each a step from the one before.
    void insertFiles(const QList<QUrl> &urls, QPointF at);
    /// Blocks, their texts, and the picture when it is one picture. Nothing when nothing is selected.
    void copySelected();
    void cutSelected();
    /// The whole picture of an image block, and nothing of the block. Nothing for one that holds none.
    void copyPicture(const Block &block);

    // Changes. Each is stamped, marked for upload and saved. Those that change which blocks there are, or their order,
    // take the block by value: it may be handed in by reference to an element of those very lists.
    /// Soft: the block stays in the storage until its deletion has been uploaded. Ends all editing; recorded for undo.
    void deleteBlock(BlockPtr block);
    /// Without undo, upload or any change of focus: for a block that was never seen whole.
    void deleteBlockSilently(BlockPtr block);
    /// One record for undo a block.
    void deleteSelected();
    /// The end of a drag, recorded for undo.
    void updatePosition(const BlockPtr &block, QPointF from, QPointF to);
    /// One record for undo a block.
    void moveSelectedBlocks(double dx, double dy);
    /// The end of a turn, in degrees, recorded for undo.
    void updateRotation(const BlockPtr &block, double from, double to);
    /// A gesture in progress: the frame only, without stamp or save, kept findable.
    void setFrameDuringGesture(Block &block, const QRectF &frame);
    /// The end of a resize that began at `from`, recorded for undo. The points of a sketch stay where they are.
    void commitTransform(const BlockPtr &block, const QRectF &from, const QRectF &to);
    /// Neither these nor the flips are recorded for undo.
    void bringToFront(BlockPtr block);
    void sendToBack(BlockPtr block);
    void toggleFlipHorizontal(const BlockPtr &block);
    void toggleFlipVertical(const BlockPtr &block);

    // Drawing.
    /// An empty sketch, the only selected block. Whoever draws records its `AddAction` once it has a stroke, or deletes
    /// it silently.
    BlockPtr beginSketch(QPointF at);
    /// Nothing for fewer than two points. A sketch that was deleted while it was being drawn comes back.
    void commitStroke(const BlockPtr &block, std::span<const SketchPoint> points, const QString &color, double width);
    /// Deletes the topmost block under the point, if any, recorded for undo.
    void eraseAt(QPointF at);
    /// A shape of one point, the only selected block.
    BlockPtr beginShapeDraw(ShapeType shapeType, QPointF at);
    void updateShapeDrawFrame(const BlockPtr &block, QPointF start, QPointF current);
    /// Recorded for undo. A click gives the shape its ordinary size around the point.
    void finalizeShapeDraw(const BlockPtr &block);

    // History.
    [[nodiscard]] bool canUndo() const { return m_history.canUndo(); }
    [[nodiscard]] bool canRedo() const { return m_history.canRedo(); }
    /// Records a change that has been made. Ignored while a change is being taken back or made again.
    void registerAction(UndoAction action);
    /// Both end editing first, which may record a change. They restore what the action holds: neither stamp, selection
    /// nor the visible blocks, for which they ask with `cullingRequested`.
    void undo();
    void redo();
    /// The same for all changes of the newest gesture, which ask for one look only. A gesture comes back whole however
    /// many changes it made.
    void undoGesture();
    void redoGesture();
    /// For `UndoGroup`, which calls these in pairs.
    void beginUndoGroup() { m_history.beginGroup(); }
    void continueUndoGroupOf(const Block &added) { m_history.continueGroupOf(added); }
    void endUndoGroup() { m_history.endGroup(); }

Q_SIGNALS:
    void blocksChanged();
    /// The frames of some blocks, in view or not.
    void framesChanged();
    void selectionChanged();
    /// The focused block is still the one whose editing is going to end: what an input method is composing goes into
    /// it now.
    void editingAboutToEnd();
    void focusedBlockIdChanged();
    void isAnyBlockEditingChanged();
    void activeToolChanged();
    void toolLockedChanged();
    void pencilColorChanged();
    void pencilWidthChanged();
    void rightClickCursorPosChanged();
    void canUndoChanged();
    void canRedoChanged();
    /// A block went from under the pointer: the view shows the arrow until it moves again.
    void cursorResetRequested();
    /// Blocks outside the visible ones may be in the viewport now: the view answers with `updateVisibleBlocks`.
    void cullingRequested();
    /// Something that the person should read has happened to what they asked for.
    void noticeRequested(const QString &text);

private:
    [[nodiscard]] QUuid ownerOfNewBlocks() const;
    [[nodiscard]] std::vector<BlockPtr> blocksInViewport() const;
    [[nodiscard]] std::vector<BlockPtr> selectedInPaintOrder() const;
    [[nodiscard]] Timestamp now() const;
    [[nodiscard]] std::int64_t takeTopZIndex();
    [[nodiscard]] std::int64_t takeBottomZIndex();
    void recomputeZIndexes();

    /// Gives the block the top depth and puts it into the storage, the canvas and the view.
    void place(const BlockPtr &block);
    /// The same for one that a person asked for, which grows in, is selected alone and can be undone.
    void spawn(const BlockPtr &block);
    [[nodiscard]] BlockPtr makeSpawned(QPointF at, BlockType type, const QString &initialText) const;
    BlockPtr placeCopyOf(const Block &block);
    /// False when there are none that can be pasted.
    bool pasteBlocks(QPointF at);
    [[nodiscard]] bool isCovering(const QRectF &frame) const;
    /// False when nothing was copied.
    bool copyToPasteboard();
    /// False when there is none that can be pasted.
    bool pasteText(QString text, QPointF at);
    /// Puts the picture that was found into the image block with that id, or into a new one. False when none was found.
    bool takePicture(const PictureFinding &finding, QPointF at, QUuid frameId);
    void insertPicture(const PictureFinding &picture, QPointF at);
    void fillPicture(Block &block, const PictureFinding &picture);
    void reportRefusals(const PictureFinding &finding, bool isSomethingTaken);
    /// An image block without a picture that is selected alone, for which a paste is meant; or null.
    [[nodiscard]] BlockPtr selectedPictureFrame() const;

    void softDelete(const std::vector<BlockPtr> &blocks);
    void removeFromCanvas(const std::vector<BlockPtr> &blocks);
    void restore(const std::vector<BlockPtr> &blocks);
    void moveTo(Block &block, QPointF position);
    void applyFrame(Block &block, const QRectF &frame);
    static void shiftPoints(Block &block, QPointF offset);
    void setFlip(Block &block, const QString &key, bool isFlipped);
    void markEdited(Block &block) const;
    void noteFormatted(Block &block);
    template <typename Get, typename Set, typename Value>
    void format(Block &block, Get get, Set set, const Value &value);
    void setSelection(std::vector<BlockPtr> blocks);
    void setFocusedBlock(const BlockPtr &block);
    void recordTyping(const BlockPtr &block, const QString &textBefore);
    /// Gives a block the keyboard; one whose text is too long only stays selected.
    void open(const BlockPtr &block, bool isNew);

    class HistoryWatch;
    void perform(std::vector<UndoAction> (UndoHistory::*take)(UndoDirection), UndoDirection direction);
    static void change(const UndoAction &action, UndoDirection direction);
    void markRestored(const std::vector<BlockPtr> &blocks);

    BlockStorage &m_storage;
    DebouncedSaver &m_saver;
    Scheduler &m_scheduler;
    Pasteboard &m_pasteboard;
    LiveBlocks m_live;
    VisibleBlocksModel m_visibleBlocks;
    std::vector<BlockPtr> m_selectedBlocks;
    std::optional<QRectF> m_culledRect;
    std::vector<BlockPtr> m_shiftedBlocks;
    LiveBlocks::Shift m_shift;
    std::int64_t m_maxZIndex = 0;
    std::int64_t m_minZIndex = 0;
    UndoHistory m_history;
    bool m_isPerformingUndoRedo = false;
    CanvasTool m_activeTool;
    bool m_toolLocked = false;
    QString m_pencilColor = QStringLiteral("#333333");
    double m_pencilWidth = 3.0;
    QPointF m_rightClickCursorPos;
    BlockPtr m_focusedBlock;
    /// Of the focused block, as its editing began.
    QString m_textAtStart;
    /// Whether the focused block was put on the canvas to be edited.
    bool m_isFocusedBlockNew = false;
    const Block *m_spawningBlock = nullptr;
    NotificationCenter::Observation m_deselectObservation;
    NotificationCenter::Observation m_turnObservation;
    PictureIntake m_pictureIntake{PictureQueue::shared()};
};

} // namespace tallowby
