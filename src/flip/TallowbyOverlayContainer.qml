import QtQuick
import Tallowby.Flip

// The canvas as it is shown once the card has turned. What floats over every canvas goes above the wrapper.
Item {
    id: container

    required property Item canvasView

    CanvasWrapper {
        anchors.fill: parent
        view: container.canvasView
    }
}
