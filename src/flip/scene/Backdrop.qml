import QtQuick
import Tallowby.Flip

BackdropView {
    id: backdrop

    Rectangle {
        anchors.fill: parent
        color: backdrop.veilColor
        visible: !backdrop.hasCapture
    }

    Loader {
        anchors.fill: parent
        visible: backdrop.hasCapture
        sourceComponent: backdrop.usesShaders ? blurred : veiled
    }

    Component {
        id: blurred

        BlurredPicture {
            image: backdrop.capture
            veilColor: backdrop.veilColor
            veilStrength: backdrop.veilStrength
        }
    }

    Component {
        id: veiled

        Picture {
            image: backdrop.capture

            Rectangle {
                anchors.fill: parent
                color: backdrop.veilColor
                opacity: backdrop.veilStrength
            }
        }
    }
}
