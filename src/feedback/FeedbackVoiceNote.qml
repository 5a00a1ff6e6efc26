import QtQuick
import QtQuick.Layouts
import Tallowby.Feedback
import Tallowby.Platform

/// Says the answer in place of writing it: records it, plays it, throws it away.
RowLayout {
    id: control

    required property FeedbackVoiceRecorder recorder

    spacing: Theme.spaceSmall

    SymbolButton {
        visible: control.recorder.hasRecording
        symbol: control.recorder.isPlaying ? "pause.fill" : "play.fill"
        text: control.recorder.isPlaying ? qsTr("Pause") : qsTr("Play")
        onClicked: control.recorder.togglePlay()
    }

    TabularText {
        visible: control.recorder.hasRecording
        color: Theme.inkSoft
        text: control.recorder.durationText
    }

    // One for all three, so that it keeps the keyboard.
    QuietButton {
        id: record

        implicitWidth: implicitContentWidth + leftPadding + 24
        leftPadding: control.recorder.isRecording ? 20 : 0
        text: control.recorder.isRecording ? qsTr("Stop") : control.recorder.hasRecording ? qsTr("Re-record") : qsTr("Record Voice Note")
        onClicked: control.recorder.isRecording ? control.recorder.stopRecording() : control.recorder.startRecording()

        Symbol {
            x: 12
            anchors.verticalCenter: parent.verticalCenter
            visible: control.recorder.isRecording
            name: "stop.circle.fill"
            size: 16
            color: Theme.danger
        }
    }

    TabularText {
        visible: control.recorder.isRecording
        color: Theme.danger
        text: control.recorder.elapsedText
    }

    Rectangle {
        Layout.preferredWidth: 120
        Layout.preferredHeight: 4
        visible: control.recorder.isRecording
        radius: 2
        color: Theme.pressWash
        Accessible.role: Accessible.Indicator
        Accessible.name: qsTr("Loudness")

        Rectangle {
            width: parent.width * control.recorder.level
            height: parent.height
            radius: 2
            color: Theme.danger
        }
    }

    QuietButton {
        visible: control.recorder.hasRecording
        text: qsTr("Discard")
        onClicked: {
            record.forceActiveFocus(focusReason)
            control.recorder.discard()
        }
    }

    Text {
        Layout.fillWidth: true
        color: Theme.danger
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        text: control.recorder.isRecording ? "" : control.recorder.mishap
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
}
