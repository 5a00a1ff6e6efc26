import QtQuick
import Tallowby.Blocks
import Tallowby.Canvas
import Tallowby.Platform

TextBlockContent {
    id: content

    displaySize: Qt.size(display.contentWidth, display.contentHeight)

    // Also the placeholder of an editor that holds nothing yet.
    Text {
        id: display

        visible: content.isDisplayShown && content.isLegible && !content.showsLinks
        leftPadding: 4
        rightPadding: 4
        topPadding: 2
        width: content.wrapWidth > 0 ? content.wrapWidth + 8 : Math.max(implicitWidth, content.width)
        wrapMode: content.hasGivenWidth ? Text.Wrap : content.wrapWidth > 0 ? Text.WrapAnywhere : Text.NoWrap
        color: content.isEmpty ? Theme.inkSoft : content.textColor
        font: content.displayFont
        text: content.isEmpty ? qsTr("Type here...") : content.displayText
        textFormat: Text.PlainText

        StruckLines { isStruck: content.block.isStrikethrough && !content.isEmpty }
    }

    GreekedText {
        visible: content.isDisplayShown && !content.isLegible
        x: 4
        y: 2
        width: content.width - 2 * x
        height: content.height - y
        color: Qt.tint(Theme.canvas, Qt.alpha(content.textColor, 0.4))
        text: content.displayText
        textSize: content.displayFont.pixelSize
    }
}
