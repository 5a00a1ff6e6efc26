pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowby.App
import Tallowby.Flip
import Tallowby.Platform

ShellWindow {
    id: window

    required property SettingsWindowController controller
    readonly property int wanted: column.implicitHeight + bottom.height + 2 * outerMargin + Theme.spaceWindow

    title: qsTr("Tallowby Settings")
    width: 520
    minimumWidth: width
    maximumWidth: width
    minimumHeight: Math.min(wanted, Screen.desktopAvailableHeight - 2 * Theme.spaceWindow)
    maximumHeight: minimumHeight
    height: minimumHeight

    Flickable {
        id: page

        anchors { fill: parent; topMargin: window.outerMargin; bottomMargin: bottom.height + window.outerMargin + Theme.spacePanel }
        clip: contentHeight > height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        contentHeight: column.implicitHeight
        ScrollBar.vertical: ThinScrollBar {}

        FocusScroller { page: page }

        ColumnLayout {
            id: column

            x: window.outerMargin
            width: parent.width - 2 * x
            spacing: Theme.spaceWindow

            Text {
                text: qsTr("Settings")
                color: Theme.ink
                font { family: Theme.uiFamily; pixelSize: Theme.titleSize; weight: Font.DemiBold }
            }

            SettingsSection {
                Layout.fillWidth: true
                title: qsTr("Key that turns the screen over")

                HotkeyRecorder {
                    Layout.fillWidth: true
                    visible: !window.controller.hotkeyAdvisor.isAssigned
                    settings: window.controller.settings
                }

                AssignedHotkey {
                    Layout.fillWidth: true
                    visible: window.controller.hotkeyAdvisor.isAssigned
                    advisor: window.controller.hotkeyAdvisor
                }

                HotkeyAdvice {
                    Layout.fillWidth: true
                    advisor: window.controller.hotkeyAdvisor
                }
            }

            SettingsSection {
                Layout.fillWidth: true
                title: qsTr("Display to turn over")

                DisplayArrangement {
                    Layout.fillWidth: true
                    Layout.bottomMargin: Theme.spaceTight
                    controller: window.controller
                }

                // By number, so that a choice keeps the keyboard when it is made.
                Repeater {
                    model: window.controller.displayChoices.length

                    SettingsChoice {
                        id: choice

                        required property int index
                        readonly property displayChoice entry: window.controller.displayChoices[Math.min(index, window.controller.displayChoices.length - 1)]

                        Layout.fillWidth: true
                        text: choice.entry.name
                        detail: choice.entry.detail
                        checked: choice.entry.isChosen
                        onClicked: window.controller.chooseDisplay(choice.index)
                    }
                }
            }

            SettingsSection {
                Layout.fillWidth: true
                title: qsTr("Looks and motion")

                RowLayout {
                    Layout.fillWidth: true

                    Text {
                        Layout.fillWidth: true
                        text: qsTr("Appearance")
                        color: Theme.ink
                        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                    }

                    SegmentedChoice {
                        name: qsTr("Appearance")
                        words: [qsTr("System"), qsTr("Light"), qsTr("Dark")]
                        current: window.controller.appearance
                        onChosen: (index) => window.controller.chooseAppearance(index)
                    }
                }

                ToggleRow {
                    Layout.fillWidth: true
                    text: qsTr("Reduce motion")
                    detail: window.controller.desktopReducesMotion ? qsTr("The desktop asks for it") : qsTr("The screen fades over instead of turning")
                    isOn: window.controller.reducesMotion
                    enabled: !window.controller.desktopReducesMotion
                    onWanted: (on) => window.controller.setReducesMotion(on)
                }
            }

            SettingsSection {
                Layout.fillWidth: true
                title: qsTr("Start")

                ToggleRow {
                    Layout.fillWidth: true
                    text: qsTr("Start at login")
                    detail: window.controller.startAtLogin.detail
                    problem: window.controller.startAtLogin.problem
                    isOn: window.controller.startAtLogin.isOn
                    enabled: window.controller.startAtLogin.isAvailable
                    onWanted: (on) => window.controller.startAtLogin.setOn(on)
                }
            }

            SyncSection {
                Layout.fillWidth: true
                status: window.controller.syncStatus
            }

            SettingsSection {
                Layout.fillWidth: true
                title: qsTr("Your notes")

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Theme.spacePanel

                    Text {
                        Layout.fillWidth: true
                        text: window.controller.dataFolder
                        color: Theme.inkSoft
                        elide: Text.ElideMiddle
                        textFormat: Text.PlainText
                        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                    }

                    QuietButton {
                        text: qsTr("Open folder")
                        onClicked: window.controller.openDataFolder()
                    }
                }
            }
        }
    }

    RowLayout {
        id: bottom

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: window.outerMargin }
        spacing: Theme.spacePanel

        Text {
            text: qsTr("Tallowby %1").arg(Qt.application.version)
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        }

        LinkButton {
            text: qsTr("Check for updates")
            onClicked: window.controller.checkForUpdates()
        }

        LinkButton {
            text: qsTr("What's new")
            onClicked: window.controller.showWhatsNew()
        }

        LinkButton {
            text: qsTr("Introduction")
            onClicked: window.controller.showIntroduction()
        }

        Item { Layout.fillWidth: true }

        PrimaryButton {
            text: qsTr("Done")
            onClicked: window.close()
        }
    }
}
