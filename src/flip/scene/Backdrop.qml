import QtQuick
import Tallowby.Flip

BackdropView {
    id: backdrop

    Rectangle {
        anchors.fill: parent
        color: backdrop.shadedVeil
        visible: !backdrop.hasCapture
    }

    Loader {
        anchors.fill: parent
        visible: backdrop.hasCapture
        sourceComponent: backdrop.usesShaders ? blurred : veiled
    }

    // Qt 6.4 does not load bound components, so these reach the root by its id unchecked.
    // qmllint disable
    Component {
        id: blurred

        BlurredPicture {
            image: backdrop.capture
            imageSize: backdrop.captureSize
            veilColor: backdrop.veilColor
            veilStrength: backdrop.veilStrength
            shade: backdrop.shade
        }
    }

    Component {
        id: veiled

        Picture {
            image: backdrop.capture

            Rectangle {
                anchors.fill: parent
                color: backdrop.shadedVeil
                opacity: backdrop.veilStrength
            }
        }
    }
    // qmllint enable
}
