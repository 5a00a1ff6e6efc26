pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.App
import Tallowby.Platform

ShellWindow {
    id: window

    required property NoticeWindowController controller
    readonly property int lastChoice: controller.choices.length - 1

    title: controller.title
    width: 480
    height: words.height + buttons.height + 3 * outerMargin
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    Column {
        id: words

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: window.outerMargin }
        spacing: Theme.spaceSmall

        Text {
            width: parent.width - 40
            color: Theme.ink
            font { family: Theme.uiFamily; pixelSize: Theme.titleSize; weight: Font.DemiBold }
            text: window.controller.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Text {
            width: parent.width
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            lineHeight: 1.3
            text: window.controller.details
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    Row {
        id: buttons

        anchors { right: parent.right; rightMargin: window.outerMargin; bottom: parent.bottom; bottomMargin: Theme.spaceWindow }
        spacing: Theme.spaceCard

        Repeater {
            model: window.lastChoice

            QuietButton {
                required property int index

                text: window.controller.choices[index]
                onClicked: window.controller.choose(index)
            }
        }

        PrimaryButton {
            text: window.controller.choices[window.lastChoice]
            onClicked: window.controller.choose(window.lastChoice)
        }
    }
}
