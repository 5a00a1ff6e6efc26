import QtQuick
import Tallowby.Platform

/// Above its button, or below it at the top of the window.
Tip {
    x: Math.round((parent.width - width) / 2)
    y: visible && parent.mapToItem(null, 0, 0).y < 44 ? parent.height + Theme.spaceSmall : -height - Theme.spaceSmall
}
