pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tallowby.Blocks
import Tallowby.Platform

/// The languages to choose from, below the label of a code block; of the same size on screen at any zoom.
Rectangle {
    id: menu

    required property CodeBlockContent code

    x: code.width - width - 8
    y: 28
    z: 1
    width: grid.width + 2 * Theme.spaceTight
    height: grid.height + 2 * Theme.spaceTight
    transformOrigin: Item.TopRight
    scale: code.chromeScale
    radius: Theme.radiusCard
    color: Theme.surfaceRaised
    border { width: 1; color: Theme.surfaceEdge }
    Accessible.role: Accessible.PopupMenu
    Accessible.name: qsTr("Language")

    SoftShadow { z: -1; radius: menu.radius }

    Grid {
        id: grid

        x: Theme.spaceTight
        y: Theme.spaceTight
        columns: 2
        flow: Grid.TopToBottom
        rows: Math.ceil(menu.code.languages.length / 2)

        Repeater {
            model: menu.code.languages
            delegate: T.AbstractButton {
                id: entry

                required property string modelData
                readonly property bool isChosen: menu.code.language === modelData

                width: 116
                height: 26
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                text: menu.code.nameOf(modelData)
                onClicked: menu.code.chooseLanguage(modelData)
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checked: isChosen
                background: Rectangle {
                    radius: Theme.radiusControl
                    color: entry.pressed ? Theme.pressWash : entry.hovered ? Theme.hoverWash : "transparent"
                }
                contentItem: Text {
                    leftPadding: Theme.spaceSmall
                    verticalAlignment: Text.AlignVCenter
                    color: entry.isChosen ? Theme.accent : Theme.ink
                    font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: entry.isChosen ? Font.DemiBold : Font.Normal }
                    text: entry.text
                    textFormat: Text.PlainText
                }
            }
        }
    }
}
