import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

ShapeBlockContent {
    id: content

    readonly property real room: Math.max(0, content.frame.width - 20)

    Text {
        id: label

        visible: content.isDisplayShown && content.isLegible && text
        x: content.frame.x + 10
        y: content.frame.y + (content.frame.height - height) / 2
        width: content.room
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: content.labelColor
        font: content.labelFont
        text: content.label
        textFormat: Text.PlainText

        StruckLines { isStruck: content.block.isStrikethrough }
    }

    GreekedText {
        visible: content.isDisplayShown && !content.isLegible
        x: content.frame.x + (content.frame.width - width) / 2
        y: label.y
        width: label.lineCount > 1 ? content.room : Math.min(content.room, label.contentWidth)
        height: label.height
        color: Qt.tint(Theme.canvas, Qt.alpha(content.labelColor, 0.4))
        text: content.label
        textSize: content.labelFont.pixelSize
    }
}
