#pragma once

class QWindow;

namespace tallowby {

/// How the program appears among the others.
enum class ActivationPolicy {
    regular = 0,   ///< an application with a window that owns the keyboard
    accessory = 1, ///< a background agent
};

/// Bits of what the desktop's own chrome does while the program is in front.
using PresentationOptions = unsigned;
inline constexpr PresentationOptions kDefaultPresentation = 0;
inline constexpr PresentationOptions kAutoHideDock = 1;
inline constexpr PresentationOptions kAutoHideMenuBar = 4;

/// The program's standing on the desktop and that of its one full-screen panel. Main thread only. What was last set can
/// be read back.
class Presentation {
public:
    virtual ~Presentation() = default;

    [[nodiscard]] virtual PresentationOptions presentationOptions() const = 0;
    /// With either auto-hide bit the panel covers docks and panels of its display; with none they are as before.
    virtual void setPresentationOptions(PresentationOptions options) = 0;

    [[nodiscard]] virtual ActivationPolicy activationPolicy() const = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Makes `window` the panel: above other windows, on every workspace, in no task bar or pager. Takes effect at its
    /// next showing, so it is called before each.
    virtual void preparePanel(QWindow &window) = 0;
    /// Shows `window` where nobody sees it, to nobody's notice, so that its graphics get ready. False, and nothing
    /// done, where the platform has no such place. `hideUnseen` ends it and must come before the window is shown for
    /// real.
    [[nodiscard]] virtual bool showUnseen(QWindow &window) = 0;
    virtual void hideUnseen(QWindow &window) = 0;
    /// Gives `window` the keyboard, whichever application has it.
    virtual void activateIgnoringOtherApps(QWindow &window) = 0;
};

} // namespace tallowby
