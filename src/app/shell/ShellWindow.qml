import QtQuick
import Tallowby.App
import Tallowby.Platform

/// A window of the program: a sheet without a title bar that can be moved by its ground, with its menu and the way out
/// in the corner.
Window {
    id: window

    required property MainMenu mainMenu
    /// Whether it stays above the windows of others.
    property bool isFloating: false
    property color ground: Theme.surface
    default property alias content: page.data
    readonly property int outerMargin: 32

    flags: Qt.Window | Qt.FramelessWindowHint | (isFloating ? Qt.WindowStaysOnTopHint : 0)
    color: ground

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: window.close()
    }

    Item {
        id: page

        anchors.fill: parent

        DragHandler {
            target: null
            onActiveChanged: active && window.startSystemMove()
        }
    }

    Row {
        anchors { top: parent.top; right: parent.right; margins: Theme.spaceSmall }

        SymbolButton {
            id: more

            symbol: "ellipsis"
            text: qsTr("Menu")
            // A click leaves the keyboard, and what is selected, where they are: that is what the menu acts on.
            focusPolicy: Qt.TabFocus
            onClicked: popup.popup(more, more.width - popup.width, more.height)
        }

        SymbolButton {
            symbol: "xmark"
            text: qsTr("Close")
            onClicked: window.close()
        }
    }

    MainMenuPopup {
        id: popup

        menu: window.mainMenu
    }

    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border { width: 1; color: Theme.surfaceEdge }
    }
}
