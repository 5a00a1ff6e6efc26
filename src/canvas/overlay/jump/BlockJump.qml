import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// A ring that goes out from the block that was gone to.
BlockJumpView {
    id: jump

    onPulse: ringing.restart()

    Rectangle {
        id: ring

        property real reach: 4

        x: Math.round(jump.frame.x - reach)
        y: Math.round(jump.frame.y - reach)
        width: Math.round(jump.frame.width + 2 * reach)
        height: Math.round(jump.frame.height + 2 * reach)
        rotation: jump.angle
        radius: Theme.radiusCard
        color: "transparent"
        border { width: 3; color: Theme.accent }
        opacity: 0
        visible: opacity > 0
    }

    ParallelAnimation {
        id: ringing

        NumberAnimation { target: ring; property: "reach"; from: 4; to: jump.reducesMotion ? 4 : 14; duration: 600; easing.type: Easing.OutCubic }
        SequentialAnimation {
            NumberAnimation { target: ring; property: "opacity"; from: 0; to: 1; duration: Theme.motionIn }
            PauseAnimation { duration: 2 * Theme.motionIn }
            NumberAnimation { target: ring; property: "opacity"; to: 0; duration: 2 * Theme.motionIn }
        }
    }
}
