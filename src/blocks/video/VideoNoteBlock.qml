import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// A video note on a card: how it is recorded, what the camera sees, how it is played.
VideoNoteBlockContent {
    id: content

    readonly property bool isRecording: content.phase === VideoNoteBlockContent.Phase.recording
    readonly property bool isPreparing: content.phase === VideoNoteBlockContent.Phase.preparing
    readonly property bool isDenied: content.phase === VideoNoteBlockContent.Phase.denied
    readonly property bool isReady: content.phase === VideoNoteBlockContent.Phase.ready
    readonly property bool isMissing: content.phase === VideoNoteBlockContent.Phase.missing
    readonly property bool isEmpty: content.phase === VideoNoteBlockContent.Phase.empty
    readonly property bool isBroken: content.phase === VideoNoteBlockContent.Phase.broken
    readonly property bool isNoticed: content.mishap !== ""
    readonly property bool hasFilm: content.isPreparing || content.isRecording || content.isReady
    readonly property bool hasRoom: content.isLegible && content.width >= 160 && content.height >= 120

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
        name: content.isRecording ? "video.fill" : "video"
    }

    Text {
        anchors { left: symbol.right; leftMargin: Theme.spaceSmall; right: dot.left; verticalCenter: symbol.verticalCenter }
        visible: content.hasRoom
        color: content.isRecording ? Theme.danger : Theme.inkSoft
        elide: Text.ElideRight
        font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.DemiBold }
        text: content.isPreparing ? qsTr("Starting…") : content.isRecording ? qsTr("Recording…") : qsTr("Video Note")
        textFormat: Text.PlainText
    }

    Rectangle {
        id: dot

        anchors { right: elapsed.left; rightMargin: 6; verticalCenter: symbol.verticalCenter }
        width: 6
        height: 6
        radius: 3
        visible: content.hasRoom && content.isRecording
        color: Theme.danger
    }

    TabularText {
        id: elapsed

        anchors { right: parent.right; rightMargin: Theme.spaceCard; verticalCenter: symbol.verticalCenter }
        visible: content.hasRoom && content.isRecording
        color: Theme.danger
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        text: content.durationText
    }

    Rectangle {
        id: panel

        anchors { left: parent.left; right: parent.right; top: symbol.bottom; margins: Theme.spaceCard; topMargin: Theme.spaceSmall }
        height: Math.max(0, content.height - y - 26)
        visible: content.hasRoom && content.hasFilm
        color: Theme.pressWash
        clip: true

        VideoSurface {
            id: surface

            anchors.fill: parent
            fills: content.isRecording
            frames: content.frames
        }

        Text {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.spaceCard
            visible: content.isPreparing || (content.isRecording && !content.hasCamera)
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            horizontalAlignment: Text.AlignHCenter
            text: content.isPreparing ? qsTr("Starting camera…") : qsTr("No camera was found: only sound is recorded.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }

        RecordingButton {
            anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: Theme.spaceSmall }
            visible: content.isRecording
            detail: content.detail
            isStrong: true
            symbol: "stop.fill"
            text: qsTr("Stop Recording")
            onClicked: content.stopRecording()
        }

        RecordingButton {
            anchors.centerIn: parent
            visible: content.isReady && (!content.isPlaying || pointer.hovered)
            detail: content.detail
            isRound: true
            symbol: content.isPlaying ? "pause.fill" : "play.fill"
            text: content.isPlaying ? qsTr("Pause") : qsTr("Play")
            onClicked: content.togglePlay()
        }

        HoverHandler {
            id: pointer
        }

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: notice.height + Theme.spaceSmall
            visible: content.isReady && content.isNoticed
            color: Theme.surface
            opacity: 0.9
        }

        Text {
            id: notice

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; bottomMargin: Theme.spaceSmall / 2; leftMargin: Theme.spaceSmall; rightMargin: Theme.spaceSmall }
            visible: content.isReady && content.isNoticed
            color: Theme.danger
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            text: content.mishap
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
    }

    Text {
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; verticalCenterOffset: content.isEmpty ? -Theme.spaceCard * 3 : 0; margins: Theme.spaceCard }
        visible: content.hasRoom && !content.hasFilm && (!content.isEmpty || content.isNoticed)
        color: content.isDenied || content.isNoticed ? Theme.danger : Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        horizontalAlignment: Text.AlignHCenter
        text: content.isDenied ? qsTr("Camera access denied. Enable in System Settings → Privacy → Camera.") : content.isNoticed ? content.mishap : content.isBroken ? qsTr("This recording cannot be played.") : qsTr("This recording is not on this device.")
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }

    RecordingButton {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: content.isEmpty ? (parent.height - height - symbol.height) / 2 : Theme.spaceCard }
        visible: content.hasRoom && !content.hasFilm
        detail: content.detail
        symbol: "video.fill"
        text: content.isMissing || content.isBroken ? qsTr("Re-record") : qsTr("Tap to Record")
        onClicked: content.startRecording()
    }

    RecordingLink {
        id: recordAgain

        anchors { left: parent.left; leftMargin: Theme.spaceCard; bottom: parent.bottom; bottomMargin: 6 }
        visible: content.hasRoom && content.isReady
        text: qsTr("Re-record")
        onClicked: content.startRecording()
    }

    RecordingLink {
        anchors { left: recordAgain.right; leftMargin: Theme.spaceCard; bottom: recordAgain.bottom }
        visible: content.hasRoom && content.hasPrevious && content.isReady
        text: qsTr("Restore previous")
        onClicked: content.restorePrevious()
    }

    RecordingLink {
        anchors { right: parent.right; rightMargin: Theme.spaceCard; verticalCenter: symbol.verticalCenter }
        visible: content.hasRoom && content.hasPrevious && !content.hasFilm
        text: qsTr("Restore previous")
        onClicked: content.restorePrevious()
    }

    TabularText {
        anchors { right: parent.right; rightMargin: Theme.spaceCard; bottom: parent.bottom; bottomMargin: 8 }
        visible: content.hasRoom && content.isReady
        color: Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: 10 }
        text: content.durationText
    }
}
