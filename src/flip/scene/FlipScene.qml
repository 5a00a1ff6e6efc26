import QtQuick
import Tallowby.Flip

// The card. What moves is set on these items directly by the scene, once a frame; nothing here is evaluated in a turn.
FlipSceneView {
    id: scene

    frontFace: front
    backFace: back
    backPicture: canvasPicture
    shadow: shade

    Item {
        id: front

        anchors.fill: parent

        Column {
            anchors.centerIn: parent
            width: 320
            height: 220
            spacing: 20

            Image {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 240
                height: 172
                source: "logo.svg"
                sourceSize: Qt.size(width * 2, height * 2)
                mipmap: true
                Accessible.ignored: true
            }

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Tallowby")
                color: scene.inkColor
                font.pixelSize: 20
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
    }

    Item {
        id: back

        anchors.fill: parent

        Rectangle {
            anchors.fill: parent
            color: scene.creamColor
            antialiasing: true
        }

        ShaderEffectSource {
            id: canvasPicture

            anchors.fill: parent
            sourceItem: scene.pictureSource
            sourceRect: scene.pictureRect
            live: false
            smooth: true
            antialiasing: true
            visible: sourceItem !== null
        }

        Picture {
            anchors.fill: parent
            image: scene.backImage
        }
    }

    Rectangle {
        id: shade

        anchors.fill: parent
        color: "black"
        opacity: 0
    }
}
