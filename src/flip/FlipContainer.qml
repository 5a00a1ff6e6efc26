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
        shade: sceneView.usesShaders ? sceneView.shadowOpacity : 0
    }

    FlipScene {
        id: sceneView

        anchors.fill: parent
    }
}
