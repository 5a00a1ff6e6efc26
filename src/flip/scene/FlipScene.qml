import QtQuick
import Tallowby.Flip
import Tallowby.Platform

// The card. What moves is set by the scene, once a frame.
FlipSceneView {
    id: scene

    frontFace: front
    frontContent: mark
    backFace: back
    backPicture: canvasPicture

    Item {
        id: front

        anchors.fill: parent

        Column {
            id: mark

            visible: scene.usesShaders
            anchors.centerIn: parent
            width: 320
            height: 220
            spacing: 20

            Image {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 240
                height: 172
                source: "logo.svg"
                sourceSize.width: width * 2
                sourceSize.height: height * 2
                mipmap: true
                Accessible.ignored: true
            }

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Tallowby")
                color: scene.inkColor
                font.family: Theme.uiFamily
                font.pixelSize: 20
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
    }

    // Shown beside the view, so that the picture is taken with the first frame of a turn, before its clock starts, and
    // not half way round when the back face comes to be seen.
    ShaderEffectSource {
        id: canvasPicture

        x: -width
        width: 1
        height: 1
        sourceItem: !scene.usesShaders ? null : scene.showsImage ? snapshot : scene.pictureSource
        sourceRect: scene.pictureRect
        live: scene.showsImage
        smooth: true
    }

    Item {
        id: back

        anchors.fill: parent

        Rectangle {
            anchors.fill: parent
            color: scene.creamColor
            visible: scene.usesShaders && !cardFace.visible
        }

        Picture {
            id: snapshot

            anchors.fill: parent
            image: scene.backImage
            visible: false
        }

        ShaderEffect {
            id: cardFace

            readonly property var source: canvasPicture
            readonly property color ground: scene.creamColor
            readonly property real shade: scene.shadowOpacity

            anchors.fill: parent
            fragmentShader: "shaders/card.frag.qsb"
            blending: scene.crossFades
            visible: scene.usesShaders && canvasPicture.sourceItem !== null
        }
    }
}
