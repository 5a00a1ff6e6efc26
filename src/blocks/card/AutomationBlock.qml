import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// What an automation has answered, on a card, and that none runs.
AutomationBlockContent {
    id: content

    readonly property bool isSmall: content.width < 120 || content.height < 56
    readonly property bool hasRoomForNote: !content.isSmall && content.height >= 96

    CardGround {
        anchors.fill: parent
        isScaled: content.isScaled
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? Math.min(Theme.radiusCard, height / 2) : 0
        color: Theme.surface
        border { width: 1; color: Theme.surfaceEdge }
    }

    Symbol {
        id: symbol

        visible: content.isLegible
        x: content.isSmall ? (content.width - width) / 2 : Theme.spaceCard
        y: content.isSmall ? (content.height - height) / 2 : Theme.spaceCard
        size: Math.max(0, Math.min(Theme.iconSmall, content.width, content.height))
        color: Theme.accent
        detail: content.detail
        name: content.kindSymbol
    }

    Text {
        anchors {
            left: symbol.right; leftMargin: Theme.spaceSmall
            right: parent.right; rightMargin: Theme.spaceCard
            verticalCenter: symbol.verticalCenter
        }
        visible: content.isLegible && !content.isSmall
        color: Theme.inkSoft
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.Medium }
        text: content.kindName
        textFormat: Text.PlainText
    }

    Text {
        id: response

        anchors {
            left: parent.left; right: parent.right; top: symbol.bottom; bottom: content.hasRoomForNote ? note.top : parent.bottom
            margins: Theme.spaceCard; topMargin: Theme.spaceSmall; bottomMargin: Theme.spaceSmall
        }
        visible: content.isLegible && !content.isSmall && text
        color: Theme.ink
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
        lineHeight: 1.25
        text: content.excerpt
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }

    Text {
        id: note

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Theme.spaceCard }
        visible: content.isLegible && content.hasRoomForNote
        color: Theme.inkSoft
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        text: qsTr("Automations do not run in this release.")
        textFormat: Text.PlainText
    }

    GreekedText {
        visible: !content.isLegible && !content.isSmall
        anchors.fill: response
        color: Qt.tint(Theme.surface, Qt.alpha(Theme.ink, 0.4))
        text: content.excerpt
        textSize: Theme.bodySize
    }
}
