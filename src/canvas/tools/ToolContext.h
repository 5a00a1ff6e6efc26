#pragma once

#include "canvas/tools/PointerInput.h"
#include "model/Block.h"

#include <QPointF>
#include <QRectF>

#include <optional>
#include <vector>

namespace tallowby {

class CanvasViewModel;
class LiveSketchState;
class Viewport;

/// All that a tool sees of the canvas that it acts on.
class ToolContext {
public:
    virtual ~ToolContext() = default;

    [[nodiscard]] virtual CanvasViewModel &viewModel() const = 0;
    [[nodiscard]] virtual const Viewport &viewport() const = 0;
    /// The stroke that is being drawn.
    [[nodiscard]] virtual LiveSketchState &liveSketch() = 0;
    /// From here on a movement with the button down is a drag; in screen points.
    [[nodiscard]] virtual double dragThreshold() const = 0;
    /// Whether a block takes typing, and whether it does so at the first click already.
    [[nodiscard]] virtual bool isEditable(const Block &block) const = 0;
    [[nodiscard]] virtual bool opensAtFirstClick(const Block &block) const = 0;

    /// True when the block's body did something with the click itself.
    [[nodiscard]] virtual bool clickBody(const Block &block, const PointerInput &input) = 0;
    /// What the block's body makes of the pointer; none for what the tool shows.
    [[nodiscard]] virtual std::optional<Qt::CursorShape> bodyCursor(const Block &block,
                                                                    const PointerInput &input) const = 0;

    virtual void panBy(QPointF screenDelta) = 0;
    /// Draws the blocks shifted by `dragOffset` canvas points; no blocks ends that.
    virtual void showDrag(const std::vector<BlockPtr> &blocks, QPointF dragOffset) = 0;
    /// The rectangle that is being drawn to select what it touches, in canvas points.
    virtual void showMarquee(std::optional<QRectF> marquee) = 0;
    /// Opens the block for editing, with the caret at the point of the screen.
    virtual void edit(const BlockPtr &block, QPointF screenPoint) = 0;
    /// What a second click does on a block that takes no typing. False when that is nothing.
    virtual bool activate(const BlockPtr &block) = 0;
    /// Empty canvas was clicked.
    virtual void canvasClicked() = 0;
    /// Lets the user choose a picture, which goes to the point of the canvas.
    virtual void pickImage(QPointF canvasPoint) = 0;
};

} // namespace tallowby
