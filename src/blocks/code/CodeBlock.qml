pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks
import Tallowby.Canvas
import Tallowby.Platform

CodeBlockContent {
    id: content

    // The menu of languages reaches over the outline of the selection.
    z: isMenuOpen ? 1 : 0
    viewport: area
    display: shown
    displaySize: Qt.size(shown.contentWidth, shown.contentHeight)

    CardGround {
        anchors.fill: parent
        isScaled: content.isScaled
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? Theme.radiusCard : 0
        color: Theme.codePanel
    }

    Row {
        visible: content.isLegible
        x: 12
        y: 10
        spacing: 7

        Repeater {
            model: content.windowDots
            delegate: Symbol {
                required property color modelData

                size: 10
                detail: content.detail
                name: "circle.fill"
                color: modelData
            }
        }
    }

    Symbol {
        id: copySymbol

        visible: content.isLegible
        anchors { right: parent.right; rightMargin: 12 }
        y: 9
        size: 12
        detail: content.detail
        name: content.isCopied ? "checkmark" : "doc.on.doc"
        color: Theme.codeInkSoft
        Accessible.role: Accessible.Button
        Accessible.name: qsTr("Copy code")
        Accessible.onPressAction: content.copy()
    }

    Symbol {
        id: chevron

        visible: content.isLegible
        anchors { right: copySymbol.left; rightMargin: 14 }
        y: 11
        size: 8
        detail: content.detail
        name: "chevron.down"
        color: Theme.codeInkSoft
    }

    Text {
        visible: content.isLegible
        anchors { right: chevron.left; rightMargin: 4; verticalCenter: copySymbol.verticalCenter }
        color: Theme.codeInkSoft
        font { family: Theme.uiFamily; pixelSize: 9; weight: Font.Medium }
        text: content.languageName
        textFormat: Text.PlainText
        Accessible.role: Accessible.ButtonMenu
        Accessible.name: qsTr("Language: %1").arg(text)
        Accessible.onPressAction: content.toggleMenu()
    }

    Item {
        visible: content.isLegible
        y: 30
        width: content.gutterWidth
        height: content.height - y
        clip: true

        Text {
            x: 0
            y: content.lineNumbersTop
            width: parent.width - 12
            color: Theme.codeInkSoft
            opacity: 0.7
            font: content.codeFont
            horizontalAlignment: Text.AlignRight
            lineHeightMode: Text.FixedHeight
            lineHeight: content.lineHeight
            text: content.lineNumbers
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }

    Item {
        id: area

        visible: content.isLegible
        x: content.gutterWidth
        y: 30
        width: content.width - x - 10
        height: content.height - y - 10
        clip: shown.contentWidth > width || shown.contentHeight > height || content.isEditing

        // The same kind of item as the editor, so that nothing moves when editing begins.
        TextEdit {
            id: shown

            visible: content.isDisplayShown
            x: -content.scrollOffset.x
            y: -content.scrollOffset.y
            width: content.wrapWidth > 0 ? content.wrapWidth : implicitWidth
            padding: 0
            enabled: false
            readOnly: true
            activeFocusOnPress: false
            color: content.isEmpty ? Theme.codeInkSoft : Theme.codeInk
            font: content.codeFont
            text: content.displayText
            textFormat: TextEdit.PlainText
            wrapMode: content.wrapWidth > 0 ? TextEdit.WrapAnywhere : TextEdit.NoWrap
            Accessible.ignored: true
        }
    }

    GreekedText {
        visible: !content.isLegible
        x: 42
        y: 30
        width: content.width - 54
        height: content.height - 40
        color: Theme.codeInkSoft
        text: content.displayText
        textSize: 13
    }

    Repeater {
        model: content.isMenuOpen ? 1 : 0
        delegate: CodeLanguageMenu { code: content }
    }
}
