#include "canvas/overlay/help/KeyboardHelpOverlay.h"

#include <utility>

namespace tallowby {

QVariantList KeyboardHelpOverlay::shortcuts() {
    const std::initializer_list<HelpShortcut> all{
        {tr("Type"), tr("Create text block")},
        {tr("Right-click"), tr("Text / Checklist / Sticky / Code / Table")},
        {tr("1–9"), tr("Select tool: cursor/shapes/pencil/text/image/eraser")},
        {tr("Lock"), tr("Keep tool active after use")},
        {tr("Ctrl V"), tr("Paste image or text")},
        {tr("Drop"), tr("Drop image onto canvas")},
        {tr("← ↑ ↓ →"), tr("Nudge selected (Shift = ×10)")},
        {tr("Return"), tr("Start editing selected block")},
        {tr("Esc"), tr("Deselect / close")},
        {tr("Ctrl D"), tr("Duplicate selected")},
        {tr("Ctrl 0"), tr("Reset zoom to 100%")},
        {tr("?"), tr("Toggle this help")},
    };
    QVariantList list;
    for (const HelpShortcut &shortcut : all) {
        list << QVariant::fromValue(shortcut);
    }
    return list;
}

void KeyboardHelpOverlay::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas != canvas) {
        m_canvas = canvas;
        if (canvas) {
            connect(canvas, &InfiniteCanvasView::isHelpVisibleChanged, this, &KeyboardHelpOverlay::follow);
            follow();
        }
        Q_EMIT canvasChanged();
    }
}

void KeyboardHelpOverlay::dismiss() {
    m_canvas->setIsHelpVisible(false);
}

void KeyboardHelpOverlay::follow() {
    // How it comes is decided before it comes.
    if (m_canvas->isHelpVisible() &&
        std::exchange(m_reducesMotion, m_canvas->prefersReducedMotion()) != m_reducesMotion) {
        Q_EMIT reducesMotionChanged();
    }
    if (std::exchange(m_isShown, m_canvas->isHelpVisible()) != m_isShown) {
        Q_EMIT isShownChanged();
    }
}

} // namespace tallowby
