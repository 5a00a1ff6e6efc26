pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Feedback
import Tallowby.Platform

/// A question with its options, of which one is chosen. Tab comes to it once; the arrow keys go through the options.
Column {
    id: group

    required property FeedbackSurvey survey
    required property int index
    readonly property feedbackQuestion entry: survey.questions[index]
    readonly property int selection: survey.selections[index]
    readonly property bool hasKeyboard: Window.activeFocusItem?.parent === group

    spacing: Theme.spaceTight
    Accessible.role: Accessible.Grouping
    Accessible.name: entry.question

    Text {
        width: parent.width
        bottomPadding: Theme.spaceTight
        color: Theme.ink
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize; weight: Font.DemiBold }
        text: group.entry.question
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }

    Repeater {
        model: group.entry.options

        FeedbackOption {
            required property int index
            required property string modelData

            width: group.width
            text: modelData
            isChosen: index === group.selection
            isTabStop: activeFocus || index === Math.max(0, group.selection)
            onClicked: group.survey.choose(group.index, index)
            // The keyboard goes with the answer.
            onIsChosenChanged: if (isChosen && group.hasKeyboard && !activeFocus) forceActiveFocus(Qt.TabFocusReason)
            Keys.onDownPressed: group.survey.choose(group.index, Math.min(index + 1, group.entry.options.length - 1))
            Keys.onUpPressed: group.survey.choose(group.index, Math.max(index - 1, 0))
        }
    }
}
