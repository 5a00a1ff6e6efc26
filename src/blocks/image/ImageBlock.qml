import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// A picture; where there is none to be seen, a card that says so.
ImageBlockContent {
    id: content

    readonly property bool isSmall: content.width < 140 || content.height < 96
    readonly property string words: content.isEmpty ? qsTr("Drop image here\nor paste  ⌘V") : content.message

    CardGround {
        anchors.fill: parent
        isScaled: content.isScaled
        visible: !content.isShown
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? Math.min(Theme.radiusCard, height / 2) : 0
        color: Theme.surface
        border { width: 1; color: Theme.surfaceEdge }
    }

    Symbol {
        id: symbol

        visible: !content.isShown && content.isLegible && words.text
        x: (content.width - width) / 2
        y: (content.height - height - (words.visible ? words.height + Theme.spaceSmall : 0)) / 2
        size: Math.max(0, Math.min(content.isSmall ? Theme.iconSmall : 28, content.width, content.height))
        detail: content.detail
        name: content.isEmpty ? "photo.on.rectangle.angled" : "exclamationmark.triangle"
    }

    Text {
        id: words

        x: Theme.spaceCard
        y: symbol.y + symbol.height + Theme.spaceSmall
        width: Math.max(0, content.width - 2 * Theme.spaceCard)
        visible: !content.isShown && content.isLegible && !content.isSmall && text
        color: Theme.inkSoft
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
        horizontalAlignment: Text.AlignHCenter
        lineHeight: 1.25
        maximumLineCount: 4
        text: content.words
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
}
