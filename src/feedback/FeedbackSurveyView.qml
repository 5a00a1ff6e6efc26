pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowby.Feedback
import Tallowby.Platform

/// The questionnaire, and the thanks for it.
Item {
    id: view

    required property FeedbackSurvey survey

    signal finished

    FeedbackThanks {
        anchors.fill: parent
        visible: view.survey.didSubmit
        onFinished: view.finished()
    }

    Item {
        anchors.fill: parent
        visible: !view.survey.didSubmit

        Column {
            id: header

            width: parent.width
            spacing: Theme.spaceTight

            Text {
                color: Theme.ink
                font { family: Theme.uiFamily; pixelSize: Theme.titleSize; weight: Font.DemiBold }
                text: qsTr("Quick Feedback")
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Text {
                width: parent.width - 40
                color: Theme.inkSoft
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                lineHeight: 1.3
                text: qsTr("You're one of our earliest users — this takes under a minute, and it genuinely shapes what we build next.")
                wrapMode: Text.Wrap
            }
        }

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: page.top }
            height: 1
            color: Theme.hairline
            visible: page.contentY > 0
        }

        Flickable {
            id: page

            anchors { left: parent.left; leftMargin: -form.x; right: parent.right; top: header.bottom; topMargin: Theme.spaceCard; bottom: footer.top; bottomMargin: Theme.spaceCard }
            clip: true
            contentHeight: form.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }

            // The question stays in view over its first option.
            FocusScroller { page: page; margin: 36 }

            Column {
                id: form

                // Room for the rings of what has the keyboard.
                x: 6
                width: parent.width - x - 16
                topPadding: Theme.spaceTight
                bottomPadding: Theme.spaceTight
                spacing: Theme.spaceWindow
                enabled: !view.survey.isSubmitting

                // By number, so that an answer keeps the keyboard when it is given.
                Repeater {
                    model: view.survey.questions.length

                    MCQGroup {
                        width: form.width
                        survey: view.survey
                    }
                }

                Column {
                    width: parent.width
                    spacing: Theme.spaceSmall

                    Text {
                        width: parent.width
                        color: Theme.ink
                        font { family: Theme.uiFamily; pixelSize: Theme.bodySize; weight: Font.DemiBold }
                        text: qsTr("6. What's one thing you'd want us to build or fix next?")
                        wrapMode: Text.Wrap
                    }

                    Text {
                        width: parent.width
                        color: Theme.inkSoft
                        font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
                        text: qsTr("Optional — type it, or record a quick voice note instead.")
                        wrapMode: Text.Wrap
                    }

                    TextArea {
                        id: words

                        width: parent.width
                        height: Math.max(84, implicitHeight)
                        leftPadding: Theme.spaceCard
                        rightPadding: Theme.spaceCard
                        topPadding: Theme.spaceSmall
                        bottomPadding: Theme.spaceSmall
                        color: Theme.ink
                        selectionColor: Theme.accent
                        selectedTextColor: Theme.accentInk
                        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                        text: view.survey.openText
                        textFormat: TextEdit.PlainText
                        wrapMode: TextEdit.Wrap
                        onTextChanged: view.survey.openText = text
                        KeyNavigation.priority: KeyNavigation.BeforeItem
                        KeyNavigation.tab: voice.nextItemInFocusChain()
                        Accessible.name: qsTr("6. What's one thing you'd want us to build or fix next?")

                        background: Rectangle {
                            radius: Theme.radiusControl
                            color: Theme.surface
                            border { width: words.activeFocus ? 2 : 1; color: words.activeFocus ? Theme.accent : Theme.hairline }
                        }
                    }

                    FeedbackVoiceNote {
                        id: voice

                        width: parent.width
                        recorder: view.survey.recorder
                    }
                }
            }
        }

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: footer.top; bottomMargin: Theme.spaceSmall }
            height: 3
            radius: 1.5
            color: Theme.pressWash
            visible: view.survey.isSubmitting && view.survey.recorder.hasRecording
            Accessible.role: Accessible.ProgressBar
            Accessible.name: qsTr("Voice note")

            Rectangle {
                width: parent.width * view.survey.progress
                height: parent.height
                radius: parent.radius
                color: Theme.accent
            }
        }

        RowLayout {
            id: footer

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            spacing: Theme.spaceCard

            Text {
                Layout.fillWidth: true
                color: view.survey.isSubmitting ? Theme.inkSoft : Theme.danger
                font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
                text: view.survey.isSubmitting ? qsTr("Sending…") : view.survey.errorMessage
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }

            QuietButton {
                text: qsTr("Maybe Later")
                onClicked: view.finished()
            }

            PrimaryButton {
                text: qsTr("Submit")
                enabled: view.survey.canSubmit
                opacity: enabled ? 1 : 0.4
                onClicked: view.survey.submit()
            }
        }
    }
}
