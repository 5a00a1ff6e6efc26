import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// A voice note on a card: how it is recorded, how loud it is, how it is played.
VoiceNoteBlockContent {
    id: content

    readonly property bool isRecording: content.state === VoiceNoteBlockContent.State.recording
    readonly property bool isReady: content.state === VoiceNoteBlockContent.State.ready
    readonly property bool isMissing: content.state === VoiceNoteBlockContent.State.missing
    readonly property bool isBroken: content.state === VoiceNoteBlockContent.State.broken
    readonly property bool isNoticed: content.mishap !== ""
    readonly property bool hasRoom: content.isLegible && content.width >= 160 && content.height >= 84

    CardGround {
        anchors.fill: parent
        isScaled: content.isScaled
        antialiasing: content.block.rotation !== 0
        radius: content.isLegible ? Math.min(Theme.radiusCard, height / 2) : 0.5
        color: Theme.surface
        border { width: 1; color: content.isRecording ? Theme.danger : Theme.surfaceEdge }
    }

    Symbol {
        id: symbol

        visible: content.isLegible
        x: content.hasRoom ? Theme.spaceCard : (content.width - width) / 2
        y: content.hasRoom ? Theme.spaceCard : (content.height - height) / 2
        size: Math.max(0, Math.min(Theme.iconSmall, content.width, content.height))
        color: content.isRecording ? Theme.danger : Theme.inkSoft
        detail: content.detail
        name: content.isRecording ? "waveform" : "mic.fill"
    }

    Text {
        anchors { left: symbol.right; leftMargin: Theme.spaceSmall; right: elapsed.left; verticalCenter: symbol.verticalCenter }
        visible: content.hasRoom
        color: content.isRecording ? Theme.danger : Theme.ink
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.DemiBold }
        text: content.isRecording ? qsTr("Recording…") : qsTr("Voice Note")
        textFormat: Text.PlainText
    }

    TabularText {
        id: elapsed

        anchors { right: parent.right; rightMargin: Theme.spaceCard; verticalCenter: symbol.verticalCenter }
        visible: content.hasRoom && content.isRecording
        color: Theme.danger
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        text: content.elapsedText
    }

    VoiceWaveform {
        id: waveform

        anchors { left: parent.left; right: parent.right; top: symbol.bottom; margins: Theme.spaceCard; topMargin: Theme.spaceSmall }
        height: Math.max(0, Math.min(64, content.height - y - (content.isReady ? 56 : 52)))
        visible: content.hasRoom && (content.isRecording || content.isReady && !content.isNoticed) && height >= 8
        isLive: content.isRecording
        loudness: content.loudness
        progress: content.isReady ? content.progress : 0
        color: content.isRecording ? Theme.danger : Theme.inkSoft
        playedColor: Theme.accent

        MouseArea {
            anchors.fill: parent
            enabled: content.isReady
            onClicked: (mouse) => content.seek(mouse.x / width)
        }
    }

    Text {
        anchors { left: parent.left; right: parent.right; top: symbol.bottom; bottom: content.isReady ? player.top : button.top; leftMargin: Theme.spaceCard; rightMargin: Theme.spaceCard }
        visible: content.hasRoom && (content.isMissing || content.isBroken || content.isNoticed)
        color: content.isNoticed ? Theme.danger : Theme.inkSoft
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        maximumLineCount: 2
        text: content.isNoticed ? content.mishap : content.isBroken ? qsTr("This recording cannot be played.") : qsTr("This recording is not on this device.")
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }

    RecordingButton {
        id: button

        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: Theme.spaceCard }
        visible: content.hasRoom && !content.isReady
        detail: content.detail
        isStrong: content.isRecording
        symbol: content.isRecording ? "stop.fill" : "mic.circle.fill"
        text: content.isRecording ? qsTr("Stop Recording") : content.isMissing || content.isBroken ? qsTr("Re-record") : qsTr("Tap to Record")
        onClicked: content.activate()
    }

    RecordingLink {
        anchors { right: parent.right; rightMargin: Theme.spaceCard; top: symbol.top; bottom: symbol.bottom }
        visible: content.hasRoom && content.hasPrevious && !content.isReady
        text: qsTr("Restore previous")
        onClicked: content.restorePrevious()
    }

    Item {
        id: player

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Theme.spaceCard; bottomMargin: Theme.spaceSmall }
        height: 40
        visible: content.hasRoom && content.isReady

        SymbolButton {
            id: play

            width: 24
            height: 24
            symbol: content.isPlaying ? "pause.fill" : "play.fill"
            text: content.isPlaying ? qsTr("Pause") : qsTr("Play")
            onClicked: content.togglePlay()
        }

        Rectangle {
            id: track

            anchors { left: play.right; leftMargin: Theme.spaceSmall; right: duration.left; rightMargin: Theme.spaceSmall; verticalCenter: play.verticalCenter }
            height: 4
            radius: 2
            color: Theme.pressWash

            Rectangle {
                width: parent.width * content.progress
                height: parent.height
                radius: 2
                visible: width > 0
                color: Theme.accent
            }

            MouseArea {
                anchors { fill: parent; topMargin: -10; bottomMargin: -10 }
                onClicked: (mouse) => content.seek(mouse.x / width)
            }
        }

        TabularText {
            id: duration

            anchors { right: parent.right; verticalCenter: play.verticalCenter }
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: 10 }
            text: content.durationText
        }

        RecordingLink {
            id: recordAgain

            anchors { left: parent.left; bottom: parent.bottom }
            text: qsTr("Re-record")
            onClicked: content.record()
        }

        RecordingLink {
            anchors { left: recordAgain.right; leftMargin: Theme.spaceCard; bottom: parent.bottom }
            visible: content.hasPrevious
            text: qsTr("Restore previous")
            onClicked: content.restorePrevious()
        }

        RecordingLink {
            anchors { right: parent.right; bottom: parent.bottom }
            text: content.rateText
            Accessible.name: qsTr("Speed %1").arg(content.rateText)
            onClicked: content.changeRate()
        }
    }
}
