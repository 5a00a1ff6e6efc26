pragma ComponentBehavior: Bound

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

    Component {
        id: blurred

        BlurredPicture {
            image: backdrop.capture // qmllint disable
            imageSize: backdrop.captureSize
            veilColor: backdrop.veilColor
            veilStrength: backdrop.veilStrength
            shade: backdrop.shade
        }
    }

    Component {
        id: veiled

        Picture {
            image: backdrop.capture // qmllint disable

            Rectangle {
                anchors.fill: parent
                color: backdrop.shadedVeil
                opacity: backdrop.veilStrength
            }
        }
    }
}
