pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Tallowby.App
import Tallowby.Flip
import Tallowby.Platform

ShellWindow {
    id: window

    required property OnboardingWindowController controller
    readonly property bool asks: controller.step === OnboardingWindowController.Permission
    readonly property bool offers: controller.step === OnboardingWindowController.OtherKey || controller.step === OnboardingWindowController.SomePlaces
    readonly property bool wantsNote: controller.step === OnboardingWindowController.WriteNote
    readonly property bool isDone: controller.step === OnboardingWindowController.Done

    title: qsTr("Welcome to Tallowby")
    isFloating: true
    ground: Theme.canvas
    width: 560
    height: 460
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    TurningScreen {
        id: picture

        x: 40
        y: 20
        width: parent.width - 2 * x
        height: 172
        turn: window.controller.isTurned ? 0.9 : 0.12
        Accessible.role: Accessible.Graphic
        Accessible.name: qsTr("A screen that turns over to a sheet of paper")

        Behavior on turn {
            enabled: window.controller.movesFreely

            NumberAnimation { duration: 520; easing.type: Easing.OutBack; easing.overshoot: 0.8 }
        }
    }

    Text {
        id: heading

        anchors { top: picture.bottom; topMargin: Theme.spaceSmall }
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Your screen has a back")
        color: Theme.ink
        font { family: Theme.uiFamily; pixelSize: Theme.displaySize; weight: Font.DemiBold }
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Text {
        id: sentence

        anchors { top: heading.bottom; topMargin: Theme.spaceTight }
        x: 72
        width: parent.width - 2 * x
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Tallowby turns it over like a card, onto one endless sheet of paper for whatever is on your mind.")
        color: Theme.inkSoft
        wrapMode: Text.Wrap
        lineHeight: 1.2
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
    }

    Rectangle {
        anchors { top: sentence.bottom; topMargin: Theme.spacePanel; bottom: bottom.top; bottomMargin: Theme.spacePanel }
        x: window.outerMargin
        width: parent.width - 2 * x
        radius: Theme.radiusPanel
        color: Theme.surface
        border { width: 1; color: Theme.surfaceEdge }

        RowLayout {
            anchors { fill: parent; leftMargin: Theme.spacePanel + 4; rightMargin: Theme.spacePanel + 4 }
            spacing: Theme.spacePanel + 4

            Row {
                visible: !window.asks
                spacing: 6

                Repeater {
                    model: window.controller.keys.length

                    OnboardingKeyCap {
                        required property int index
                        readonly property onboardingKey entry: window.controller.keys[Math.min(index, window.controller.keys.length - 1)]

                        text: entry.text
                        isLit: entry.isLit
                    }
                }
            }

            Column {
                Layout.fillWidth: true
                visible: !window.offers
                spacing: 3

                Row {
                    spacing: 6

                    Symbol {
                        visible: window.isDone
                        anchors.verticalCenter: parent.verticalCenter
                        name: "checkmark.circle.fill"
                        color: Theme.success
                    }

                    Text {
                        text: window.asks ? qsTr("A key that works everywhere") : window.isDone ? qsTr("That is all there is to it") : window.wantsNote ? qsTr("Now write something") : qsTr("Try it now")
                        color: Theme.ink
                        textFormat: Text.PlainText
                        font { family: Theme.uiFamily; pixelSize: Theme.emphasisSize; weight: Font.DemiBold }
                    }
                }

                Text {
                    width: parent.width
                    text: window.asks ? qsTr("This desktop has not given Tallowby one yet. As soon as it does, it goes on here by itself.") : window.isDone ? qsTr("Your note waits on the back of the screen.") : window.wantsNote ? qsTr("Turn the screen over and just type: a note begins under the pointer.") : qsTr("Press the keys together. Once more brings you back.")
                    color: Theme.inkSoft
                    wrapMode: Text.Wrap
                    textFormat: Text.PlainText
                    font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                }
            }

            HotkeyAdvice {
                Layout.fillWidth: true
                visible: window.offers
                advisor: window.controller.hotkeyAdvisor
            }

            QuietButton {
                visible: window.asks
                text: qsTr("Ask for permission")
                onClicked: window.controller.askForPermission()
            }
        }
    }

    RowLayout {
        id: bottom

        anchors { bottom: parent.bottom; bottomMargin: Theme.spaceWindow }
        x: window.outerMargin
        width: parent.width - 2 * x
        height: 40
        spacing: Theme.spaceWindow

        ToggleRow {
            Layout.fillWidth: true
            text: qsTr("Start at login")
            detail: window.controller.startAtLogin.detail
            problem: window.controller.startAtLogin.problem
            isOn: window.controller.startAtLogin.isOn
            enabled: window.controller.startAtLogin.isAvailable
            onWanted: (on) => window.controller.startAtLogin.setOn(on)
        }

        PrimaryButton {
            text: window.asks ? qsTr("Later") : qsTr("Done")
            onClicked: window.controller.finish()
        }
    }
}
