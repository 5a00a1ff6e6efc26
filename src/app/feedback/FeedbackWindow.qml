import QtQuick
import Tallowby.App
import Tallowby.Feedback
import Tallowby.Platform

ShellWindow {
    id: window

    required property FeedbackWindowController controller

    title: qsTr("Tallowby Feedback")
    isFloating: true
    width: 520
    height: 680
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    onClosing: controller.closed()

    FeedbackSurveyView {
        anchors { fill: parent; margins: window.outerMargin; bottomMargin: Theme.spaceWindow }
        survey: window.controller.survey
        onFinished: window.controller.finish()
    }
}
