import QtQuick
import Tallowby.Blocks

/// A symbol, as large as its block allows.
IconBlockContent {
    id: content

    Image {
        anchors.centerIn: parent
        width: Math.min(content.width, content.height)
        height: width
        mirror: content.isFlippedHorizontally
        mirrorVertically: content.isFlippedVertically
        source: "image://theme/symbol/" + content.symbol + "/" + content.tint.toString().slice(1)
        sourceSize { width: content.shownSide; height: content.shownSide }
    }
}
