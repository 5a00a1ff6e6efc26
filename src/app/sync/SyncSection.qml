import QtQuick
import QtQuick.Layouts
import Tallowby.App
import Tallowby.Platform

/// Of the settings: how it stands with the backend, and under which id.
SettingsSection {
    id: section

    required property SyncStatus status

    title: qsTr("Sync")

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.spaceSmall

        Rectangle {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 5
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: section.status.color
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Text {
                Layout.fillWidth: true
                color: Theme.ink
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                text: section.status.summary
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }

            Text {
                Layout.fillWidth: true
                visible: text
                color: Theme.inkSoft
                font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
                text: section.status.detail
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }
        }
    }

    Text {
        Layout.fillWidth: true
        visible: section.status.userId
        color: Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
        text: qsTr("Your anonymous id. Whoever has it can read your notes, so keep it to yourself.")
        wrapMode: Text.Wrap
    }

    RowLayout {
        Layout.fillWidth: true
        visible: section.status.userId
        spacing: Theme.spaceCard

        Text {
            Layout.fillWidth: true
            color: Theme.ink
            elide: Text.ElideMiddle
            font { family: Theme.codeFamily; pixelSize: Theme.labelSize }
            text: section.status.userId
            textFormat: Text.PlainText
        }

        QuietButton {
            text: qsTr("Copy")
            onClicked: section.status.copyUserId()
        }
    }
}
