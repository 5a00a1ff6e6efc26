import QtQuick
import Tallowby.Flip

BackdropView {
    id: backdrop

    Rectangle {
        anchors.fill: parent
        color: backdrop.shadedVeil
        visible: !backdrop.hasCapture && backdrop.usesShaders
    }

    BlurredPicture {
        anchors.fill: parent
        visible: backdrop.hasCapture && backdrop.usesShaders
        image: backdrop.capture
        imageSize: backdrop.captureSize
        veilColor: backdrop.veilColor
        veilStrength: backdrop.veilStrength
        shade: backdrop.shade
    }
}
