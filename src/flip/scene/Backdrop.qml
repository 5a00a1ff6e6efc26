import QtQuick
import Tallowby.Flip

BackdropView {
    id: backdrop

    Rectangle {
        anchors.fill: parent
        color: backdrop.shadedVeil
        visible: !backdrop.hasCapture
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

    Picture {
        anchors.fill: parent
        visible: backdrop.hasCapture && !backdrop.usesShaders
        image: backdrop.capture

        Rectangle {
            anchors.fill: parent
            color: backdrop.shadedVeil
            opacity: backdrop.veilStrength
        }
    }
}
