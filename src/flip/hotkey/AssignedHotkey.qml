import QtQuick
import QtQuick.Layouts
import Tallowby.Flip
import Tallowby.Platform

/// The hot key that the desktop has given, where programs cannot choose one, and the way to the desktop's choice.
Rectangle {
    id: assigned

    required property HotkeyAdvisor advisor

    implicitHeight: 36
    radius: Theme.radiusControl
    color: "transparent"
    border { width: 1; color: Theme.hairline }

    RowLayout {
        anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
        spacing: Theme.spaceSmall

        Text {
            Layout.fillWidth: true
            readonly property bool isGiven: assigned.advisor.combination.length > 0

            text: isGiven ? assigned.advisor.combination
                          : assigned.advisor.isUndecided ? qsTr("Waiting for the desktop…") : qsTr("No key yet")
            color: isGiven ? Theme.ink : Theme.inkSoft
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font { family: Theme.uiFamily; pixelSize: 13; weight: Font.Medium }
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("Hot key: %1").arg(text)
        }

        LinkButton {
            text: qsTr("Change in the desktop's settings…")
            onClicked: assigned.advisor.openKeyAssignment()
        }
    }
}
