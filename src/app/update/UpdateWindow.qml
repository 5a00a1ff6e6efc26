import QtQuick
import Tallowby.App
import Tallowby.Platform

ShellWindow {
    id: window

    required property UpdaterController controller
    readonly property bool isAvailable: controller.state === UpdaterController.State.available
    readonly property bool isFailed: controller.state === UpdaterController.State.failed

    title: qsTr("Tallowby Updates")
    isFloating: true
    width: 440
    height: 200
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    Column {
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
        }
    }

    Row {
        anchors { right: parent.right; rightMargin: window.outerMargin; bottom: parent.bottom; bottomMargin: Theme.spaceWindow }
        spacing: Theme.spaceCard

        QuietButton {
            visible: window.isAvailable || window.isFailed
            text: window.isAvailable ? qsTr("Later") : qsTr("Close")
            onClicked: window.close()
        }

        PrimaryButton {
            text: window.isAvailable ? qsTr("Show It") : window.isFailed ? qsTr("Try Again") : qsTr("Close")
            onClicked: {
                if (window.isFailed) {
                    window.controller.checkAgain()
                } else {
                    window.controller.openPage()
                    window.close()
                }
            }
        }
    }
}
