pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic
import Tallowby.App
import Tallowby.Flip
import Tallowby.Platform

Window {
    id: window

    required property SettingsWindowController controller
    readonly property int outerMargin: 32

    title: qsTr("Tallowby Settings")
    color: Theme.surface
    width: 480
    minimumWidth: width
    maximumWidth: width
    minimumHeight: column.implicitHeight + 2 * outerMargin
    maximumHeight: minimumHeight
    height: minimumHeight

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: window.outerMargin
        spacing: 24

        Text {
            text: qsTr("Settings")
            color: Theme.ink
            font.family: Theme.uiFamily
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
        }

        SettingsSection {
            Layout.fillWidth: true
            title: qsTr("Key that turns the screen over")

            HotkeyRecorder {
                Layout.fillWidth: true
                settings: window.controller.settings
            }
        }

        SettingsSection {
            Layout.fillWidth: true
            title: qsTr("Display to turn over")

            Repeater {
                model: window.controller.displayChoices

                SettingsChoice {
                    id: choice

                    required property displayChoice modelData
                    required property int index

                    Layout.fillWidth: true
                    text: choice.modelData.name
                    detail: choice.modelData.detail
                    checked: choice.modelData.isChosen
                    onClicked: window.controller.chooseDisplay(choice.index)
                }
            }
        }

        SettingsSection {
            Layout.fillWidth: true
            title: qsTr("Your notes")

            Text {
                Layout.fillWidth: true
                text: window.controller.dataFolder
                color: Theme.inkSoft
                elide: Text.ElideMiddle
                font.family: Theme.uiFamily
                font.pixelSize: Theme.bodySize
            }

            SettingsButton {
                text: qsTr("Open folder")
                onClicked: window.controller.openDataFolder()
            }
        }

        SyncSection {
            Layout.fillWidth: true
            status: window.controller.syncStatus
        }

        Text {
            text: qsTr("Tallowby %1").arg(Qt.application.version)
            color: Theme.inkSoft
            font.family: Theme.uiFamily
            font.pixelSize: Theme.captionSize
        }
    }
}
