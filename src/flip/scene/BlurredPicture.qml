import QtQuick
import Tallowby.Flip

// A small picture blurred at its own size, once for each picture, and then only stretched: no frame pays for the blur.
// The textures are live, which renders them anew when what they show changes and never otherwise.
Item {
    id: blurred

    required property var image
    required property size imageSize
    required property color veilColor
    required property real veilStrength
    required property real shade

    Picture {
        id: small

        width: blurred.imageSize.width
        height: blurred.imageSize.height
        image: blurred.image // qmllint disable
        visible: false
    }

    ShaderEffectSource {
        id: sharpTexture

        sourceItem: small
        textureSize.width: blurred.imageSize.width
        textureSize.height: blurred.imageSize.height
        visible: false
    }

    ShaderEffect {
        id: acrossPass

        readonly property var source: sharpTexture
        readonly property vector2d stride: Qt.vector2d(1 / width, 0)
        readonly property color veil: "transparent"
        readonly property real saturation: 1

        width: small.width
        height: small.height
        fragmentShader: "shaders/blur.frag.qsb"
        visible: false
    }

    ShaderEffectSource {
        id: acrossTexture

        sourceItem: acrossPass
        textureSize.width: blurred.imageSize.width
        textureSize.height: blurred.imageSize.height
        visible: false
    }

    ShaderEffect {
        id: downPass

        readonly property var source: acrossTexture
        readonly property vector2d stride: Qt.vector2d(0, 1 / height)
        readonly property color veil: Qt.alpha(blurred.veilColor, blurred.veilStrength)
        readonly property real saturation: 1.5

        width: small.width
        height: small.height
        fragmentShader: "shaders/blur.frag.qsb"
        visible: false
    }

    ShaderEffectSource {
        id: downTexture

        sourceItem: downPass
        textureSize.width: blurred.imageSize.width
        textureSize.height: blurred.imageSize.height
        smooth: true
        visible: false
    }

    ShaderEffect {
        readonly property var source: downTexture
        readonly property real shade: blurred.shade

        anchors.fill: parent
        fragmentShader: "shaders/backdrop.frag.qsb"
        blending: false
    }
}
