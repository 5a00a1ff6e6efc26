#pragma once

#include "canvas/tools/PointerInput.h"
#include "canvas/tools/ToolContext.h"

namespace tallowby {

/// What the pointer does while its tool is in hand: the state from a press to its release. A release or a cancellation
/// always follows a press, and nothing else is pressed in between.
class Tool {
public:
    explicit Tool(ToolContext &context)
        : m_context(context) {}
    virtual ~Tool() = default;
    Tool(const Tool &) = delete;
    Tool &operator=(const Tool &) = delete;

    virtual void press(const PointerInput &input) = 0;
    virtual void move(const PointerInput &input) = 0;
    virtual void release(const PointerInput &input) = 0;
    /// Puts back everything that the press and the moves have done.
    virtual void cancel() = 0;
    /// The gesture cannot go on, and nobody has given it up: a second finger came, or the release went elsewhere. A
    /// tool that loses something by it keeps what is done so far. True when anything is kept.
    virtual bool interrupt() {
        cancel();
        return false;
    }
    /// The shape of the pointer at this place: over what lies there, or in the middle of a gesture.
    [[nodiscard]] virtual Qt::CursorShape cursor(const PointerInput &input) const = 0;

protected:
    [[nodiscard]] ToolContext &context() const { return m_context; }
    [[nodiscard]] CanvasViewModel &viewModel() const { return m_context.viewModel(); }

private:
    ToolContext &m_context;
};

} // namespace tallowby
