import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// The mini map in its frame; there only while something is out of sight, or a newcomer
/// is told about it. Asks for the offset to jump to.
Item {
    id: map

    required property InfiniteCanvasView canvas
    property size mapSize: Qt.size(200, 130)
    property real padding: Theme.spaceSmall
    property real mapCornerRadius: Theme.radiusCard

    signal jump(point offset)

    implicitWidth: mapSize.width
    implicitHeight: mapSize.height
    opacity: content.isShown ? 1 : 0
    visible: opacity > 0
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Mini map")

    Behavior on opacity {
        NumberAnimation { duration: content.isShown ? Theme.motionIn : Theme.motionOut; easing.type: Easing.OutQuad }
    }

    SoftShadow {
        radius: map.mapCornerRadius
        strength: Theme.isDark ? 0.4 : 0.1
    }

    Rectangle {
        anchors.fill: parent
        radius: map.mapCornerRadius
        color: Qt.alpha(Theme.surface, 0.92)
        border { width: 1; color: Theme.hairline }
    }

    MiniMapView {
        id: content

        anchors.fill: parent
        canvas: map.canvas
        padding: map.padding
        onJump: (offset) => map.jump(offset)
    }

    Rectangle {
        x: content.viewportOutline.x
        y: content.viewportOutline.y
        width: content.viewportOutline.width
        height: content.viewportOutline.height
        radius: 2
        color: Theme.accentTint
        border { width: 1; color: Theme.accent }
    }
}
