import QtQuick
import Tallowby.Blocks
import Tallowby.Canvas
import Tallowby.Platform

StickyNoteBlockContent {
    id: content

    SoftShadow {
        visible: content.isLegible
        radius: paper.radius
        strength: 0.16
    }

    CardGround {
        id: paper

        anchors.fill: parent
        isScaled: content.isScaled
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? 3 : 0
        color: content.paper
    }

    // Also the placeholder of an editor that holds nothing yet.
    Text {
        visible: content.isDisplayShown && content.isLegible && !content.showsLinks
        x: 14
        y: 14
        width: content.width - 2 * x
        height: content.height - y
        color: content.isEmpty ? Qt.alpha(Theme.noteInk, 0.7) : Theme.noteInk
        font: content.displayFont
        text: content.isEmpty ? qsTr("Tap to edit...") : content.displayText
        textFormat: Text.PlainText
        wrapMode: Text.Wrap

        StruckLines { isStruck: content.block.isStrikethrough && !content.isEmpty }
    }

    GreekedText {
        visible: content.isDisplayShown && !content.isLegible
        x: 14
        y: 14
        width: content.width - 2 * x
        height: content.height - 2 * y
        color: Qt.tint(content.paper, Qt.alpha(Theme.noteInk, 0.45))
        text: content.displayText
        textSize: content.displayFont.pixelSize
    }
}
