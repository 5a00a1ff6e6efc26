pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks
import Tallowby.Canvas
import Tallowby.Platform

ChecklistBlockContent {
    id: content

    addRight: addWords.x + addWords.implicitWidth

    // At rest the pointer is the canvas's, but for the line that adds an item: nothing in here is asked about it.
    Item {
        anchors.fill: parent
        enabled: content.isEditing

        // Opaque and without smoothed edges, unless it is turned, as every card.
        CardGround {
            anchors.fill: parent
            isScaled: content.isScaled
            antialiasing: content.block.rotation !== 0
            radius: content.isLegible ? Theme.radiusCard : 0
            color: Theme.surface
            border { width: 1; color: Theme.surfaceEdge }
        }

        Symbol {
            visible: content.isLegible
            x: 18
            y: (36 - height) / 2
            detail: content.detail
            name: "checklist"
        }

        Text {
            id: title

            visible: content.isLegible && !(content.isTitleEdited && !content.isDisplayShown)
            x: 42
            y: 11
            width: content.width - 140
            height: content.headerHeight - y
            color: content.title ? Theme.ink : Theme.inkSoft
            font: content.titleFont
            text: content.title ? content.title : qsTr("Checklist")
            textFormat: Text.PlainText
            elide: Text.ElideRight
            wrapMode: Text.Wrap
        }

        Text {
            anchors { right: parent.right; rightMargin: Theme.spaceCard }
            visible: content.isLegible
            y: 11
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            text: content.progress
            textFormat: Text.PlainText
        }

        Text {
            visible: content.isLegible && text
            x: 42
            y: content.addTop + 34
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            text: content.extent
            textFormat: Text.PlainText
        }

        GreekedText {
            visible: !content.isLegible
            anchors { fill: parent; margins: Theme.spaceCard; leftMargin: 42 }
            color: Qt.tint(Theme.surface, Qt.alpha(Theme.ink, 0.4))
            text: content.overview
            textSize: 16
        }
    }

    Repeater {
        model: content.isLegible ? content.rows : null
        delegate: ChecklistItemView {
            list: content
            enabled: content.isEditing
        }
    }

    Item {
        y: content.addTop
        width: parent.width
        height: 34
        visible: content.isLegible

        Rectangle {
            x: plus.x - 8
            y: 3
            width: addWords.x + addWords.implicitWidth + 16 - plus.x
            height: parent.height - 2 * y
            radius: Theme.radiusControl
            color: addHover.hovered ? Theme.hoverWash : "transparent"

            HoverHandler { id: addHover }
        }

        Symbol {
            id: plus

            x: 20
            y: (parent.height - height) / 2
            size: 12
            detail: content.detail
            name: "plus"
        }

        Text {
            id: addWords

            x: 42
            y: (parent.height - height) / 2
            color: Theme.inkSoft
            font: content.itemFont
            text: qsTr("Add Item")
            Accessible.role: Accessible.Button
            Accessible.name: text
            Accessible.onPressAction: content.addItem()
        }
    }
}
