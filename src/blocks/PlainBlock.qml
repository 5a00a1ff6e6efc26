import QtQuick
import Tallowby.Blocks
import Tallowby.Canvas
import Tallowby.Platform

/// A block as a plain card: what kind it is and what text it has.
PlainBlockContent {
    id: content

    readonly property bool isSmall: content.width < 120 || content.height < 56

    // Opaque and without smoothed edges, unless it is turned: then the symbols and texts of all cards are drawn together
    // instead of card by card. Too small to be read, it keeps a radius that rounds nothing off: what has one hides
    // nothing for Qt's own painter, which else cuts hundreds of cards out of what lies below them, one by one.
    CardGround {
        anchors.fill: parent
        isScaled: content.isScaled
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? Math.min(Theme.radiusCard, height / 2) : 0.5
        color: Theme.surface
        border { width: 1; color: Theme.surfaceEdge }
    }

    Symbol {
        id: symbol

        visible: content.isLegible
        x: content.isSmall ? (content.width - width) / 2 : Theme.spaceCard
        y: content.isSmall ? (content.height - height) / 2 : Theme.spaceCard
        size: Math.max(0, Math.min(Theme.iconSmall, content.width, content.height))
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
        id: words

        anchors {
            left: parent.left; right: parent.right; top: symbol.bottom; bottom: parent.bottom
            margins: Theme.spaceCard; topMargin: Theme.spaceSmall
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

    GreekedText {
        visible: !content.isLegible && !content.isSmall
        anchors.fill: words
        color: Qt.tint(Theme.surface, Qt.alpha(Theme.ink, 0.4))
        text: content.excerpt
        textSize: Theme.bodySize
    }
}
