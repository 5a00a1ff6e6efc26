#pragma once

#include "canvas/drawing/LiveSketchState.h"
#include "canvas/model/CanvasViewModel.h"
#include "canvas/tools/ToolBox.h"
#include "canvas/view/Viewport.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "support/FakePasteboard.h"
#include "support/LogCapture.h"
#include "support/VirtualScheduler.h"

#include <map>

namespace tallowby::test {

/// A hand that presses, drags and lets go, on a model with all the tools and without a window: a view of 800 × 600
/// points whose middle is the canvas origin. Points of gestures are points of the screen, seen from that middle, so
/// that they are canvas points as long as nothing is panned or zoomed.
class GestureDriver : public ToolContext {
public:
    GestureDriver();

    BlockPtr add(BlockType type, const QRectF &frame);
    GestureDriver &press(QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    GestureDriver &move(QPointF to);
    GestureDriver &release();
    GestureDriver &click(QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// In a few steps.
    GestureDriver &drag(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    [[nodiscard]] Qt::CursorShape cursorAt(QPointF at);
    /// Where the handle of the selected block stands.
    [[nodiscard]] QPointF handle(BlockHandle handle);

    [[nodiscard]] CanvasViewModel &viewModel() const override { return const_cast<CanvasViewModel &>(model); }
    [[nodiscard]] const Viewport &viewport() const override { return view; }
    [[nodiscard]] LiveSketchState &liveSketch() override { return live; }
    [[nodiscard]] double dragThreshold() const override { return 4; }
    [[nodiscard]] bool isEditable(const Block &block) const override;
    [[nodiscard]] bool opensAtFirstClick(const Block &block) const override;
    [[nodiscard]] bool clickBody(const Block &, const PointerInput &) override { return false; }
    [[nodiscard]] std::optional<Qt::CursorShape> bodyCursor(const Block &, const PointerInput &) const override {
        return std::nullopt;
    }
    void panBy(QPointF screenDelta) override { view.pan(screenDelta); }
    void showDrag(const std::vector<BlockPtr> &blocks, QPointF dragOffset) override;
    void showMarquee(std::optional<QRectF> shown) override { marquee = shown; }
    void edit(const BlockPtr &block, QPointF screenPoint) override;
    bool activate(const BlockPtr &) override { return false; }
    void canvasClicked() override { ++canvasClicks; }
    void pickImage(QPointF canvasPoint) override { pickedAt = canvasPoint; }

    LogCapture log;
    VirtualScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
    DebouncedSaver saver{scheduler, storage};
    NotificationCenter notifications;
    FakePasteboard pasteboard;
    CanvasViewModel model{storage, saver, notifications, scheduler, pasteboard};
    Viewport view;
    LiveSketchState live;
    ToolBox tools{*this};

    /// By how much each dragged block is drawn beside its place.
    std::map<const Block *, QPointF> dragOffsets;
    std::optional<QRectF> marquee;
    std::optional<QPointF> pickedAt;
    int canvasClicks = 0;

private:
    [[nodiscard]] PointerInput inputAt(QPointF fromMiddle) const;

    QPointF m_at;
    Qt::KeyboardModifiers m_modifiers;
};

} // namespace tallowby::test
