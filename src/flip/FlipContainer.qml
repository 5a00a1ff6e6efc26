import QtQuick
import Tallowby.Flip

// The window's content while the card turns.
Item {
    id: container

    property alias backdrop: backdropView
    property alias scene: sceneView

    Backdrop {
        id: backdropView

        anchors.fill: parent
        shade: sceneView.shadowOpacity
    }

    FlipScene {
        id: sceneView

        anchors.fill: parent
    }

    PaintedTurn {
        anchors.fill: parent
        visible: !sceneView.usesShaders
        scene: sceneView
        backdrop: backdropView
    }
}
