import QtQuick
import Tallowby.Platform

/// One block that was found: its kind, how it begins, where it matches, and how long ago it was changed.
Item {
    id: row

    required property int index
    required property string title
    required property string snippet
    required property string age
    required property string symbol
    required property string spoken
    property bool isCurrent: false

    signal chosen()
    signal pointed()

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.description: age
    Accessible.focusable: true
    Accessible.focused: isCurrent
    Accessible.onPressAction: chosen()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusControl
        color: Theme.accentTint
        visible: row.isCurrent
    }

    Symbol {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        name: row.symbol
        size: Theme.iconLarge
        color: row.isCurrent ? Theme.accent : Theme.inkSoft
    }

    Column {
        x: 44
        width: ageText.x - x - Theme.spaceCard
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Text {
            width: parent.width
            color: Theme.ink
            elide: Text.ElideRight
            maximumLineCount: 1
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            text: row.title
            textFormat: Text.StyledText
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            visible: row.snippet
            color: Theme.inkSoft
            elide: Text.ElideRight
            maximumLineCount: 1
            font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
            text: row.snippet
            textFormat: Text.StyledText
            Accessible.ignored: true
        }
    }

    Text {
        id: ageText

        anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
        color: Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        text: row.age
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onPositionChanged: row.pointed()
        onClicked: row.chosen()
    }
}
