pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks
import Tallowby.Canvas
import Tallowby.Platform

TableBlockContent {
    id: content

    // Opaque and without smoothed edges, unless it is turned, as every card.
    CardGround {
        anchors.fill: parent
        isScaled: content.isScaled
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? Theme.radiusControl : 0
        color: Theme.surface
        border { width: 1; color: Theme.surfaceEdge }
    }

    Repeater {
        model: content.isLegible ? content.cells : null
        delegate: Text {
            required property string words
            required property real cellX
            required property real cellY
            required property real cellWidth
            required property real cellHeight
            required property bool isHeader
            required property bool isRightAligned
            required property bool isEdited

            visible: !isEdited
            x: cellX + 10
            y: cellY + 7
            width: cellWidth - 20
            height: cellHeight - 7
            color: Theme.ink
            font: isHeader ? content.headerFont : content.cellFont
            horizontalAlignment: isRightAligned ? Text.AlignRight : Text.AlignLeft
            text: words
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            Accessible.role: isHeader ? Accessible.ColumnHeader : Accessible.Cell
            Accessible.name: words
        }
    }

    Text {
        anchors { left: parent.left; leftMargin: 10; bottom: parent.bottom; bottomMargin: 6 }
        visible: content.isLegible && text
        color: Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        text: content.extent
        textFormat: Text.PlainText
    }

    GreekedText {
        visible: !content.isLegible
        anchors { fill: parent; margins: 10 }
        color: Qt.tint(Theme.surface, Qt.alpha(Theme.ink, 0.4))
        text: content.overview
        textSize: 20
    }

    Repeater {
        model: content.isEditing ? 1 : 0
        delegate: TableHandles { table: content; z: 2 }
    }
}
