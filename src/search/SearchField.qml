import QtQuick
import Tallowby.Platform
import Tallowby.Search

/// What is looked for, and a way to empty it.
Item {
    id: field

    required property SearchOverlayView overlay
    readonly property alias input: textInput

    Symbol {
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: Theme.iconLarge
    }

    TextInput {
        id: textInput

        x: 52
        width: clearButton.x - x - Theme.spaceSmall
        anchors.verticalCenter: parent.verticalCenter
        focus: true
        clip: true
        color: Theme.ink
        selectionColor: Theme.accent
        selectedTextColor: Theme.surface
        font { family: Theme.uiFamily; pixelSize: Theme.titleSize }
        maximumLength: 1000
        text: field.overlay.searchText
        onTextEdited: field.overlay.searchText = text
        Accessible.role: Accessible.EditableText
        Accessible.name: placeholder.text

        Text {
            id: placeholder

            anchors.verticalCenter: parent.verticalCenter
            visible: !textInput.text && !textInput.preeditText
            color: Theme.inkSoft
            font: textInput.font
            text: qsTr("Search blocks...")
            Accessible.ignored: true
        }
    }

    SymbolButton {
        id: clearButton

        anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        visible: textInput.text
        symbol: "xmark"
        text: qsTr("Clear")
        onClicked: field.overlay.clear()
    }
}
