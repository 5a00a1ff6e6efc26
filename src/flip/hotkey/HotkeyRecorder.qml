import QtQuick
import Tallowby.Flip
import Tallowby.Platform

/// The field in which the hot key is shown and recorded.
HotkeyRecorderView {
    id: recorder

    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Hot key: %1").arg(recorder.combination)
    Accessible.description: recorder.isRecording ? qsTr("Press a key combo…") : qsTr("Click to record another one")
    Accessible.onPressAction: recorder.toggleRecording()

    Column {
        id: column

        width: parent.width
        spacing: 6

        Rectangle {
            width: parent.width
            height: 36
            radius: Theme.radiusControl
            color: pointer.hovered ? Theme.hoverWash : "transparent"
            border.width: recorder.isRecording ? 1.5 : 1
            border.color: recorder.isRecording ? Theme.danger : Theme.hairline

            Rectangle {
                id: recordingMark

                visible: recorder.isRecording
                x: 12
                anchors.verticalCenter: parent.verticalCenter
                width: 6
                height: 6
                radius: 3
                color: Theme.danger
            }

            Text {
                anchors.left: recorder.isRecording ? recordingMark.right : parent.left
                anchors.leftMargin: recorder.isRecording ? 8 : 12
                anchors.verticalCenter: parent.verticalCenter
                text: recorder.isRecording ? qsTr("Press a key combo…") : recorder.combination
                color: recorder.isRecording ? Theme.inkSoft : Theme.ink
                font.family: recorder.isRecording ? Theme.codeFamily : Theme.uiFamily
                font.pixelSize: 13
                font.weight: Font.Medium
            }

            Text {
                anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
                visible: !recorder.isRecording
                text: recorder.combinationInWords
                color: Theme.inkSoft
                textFormat: Text.PlainText
                font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
            }

            FocusRing { isShown: recorder.activeFocus && !recorder.isRecording; radius: Theme.radiusControl + 4 }

            HoverHandler {
                id: pointer

                cursorShape: Qt.PointingHandCursor
            }

            TapHandler {
                onTapped: recorder.toggleRecording()
            }
        }

        Text {
            visible: text.length > 0
            width: parent.width
            text: recorder.errorMessage
            color: Theme.danger
            wrapMode: Text.Wrap
            font.family: Theme.uiFamily
            font.pixelSize: 11
        }

        Text {
            visible: recorder.isRecording
            text: qsTr("Esc to cancel")
            color: Theme.inkSoft
            font.family: Theme.uiFamily
            font.pixelSize: 11
        }
    }
}
