pragma ComponentBehavior: Bound

import QtQuick

/// A choice among widths of a line, each shown as a line of that width.
Row {
    id: choice

    required property var widths
    /// The place of the current one; -1 for none.
    required property int current
    /// What a screen reader says, with the width in place of %1.
    required property string what

    signal chosen(int place)

    Repeater {
        model: choice.widths

        ToolbarButton {
            required property real modelData
            required property int index

            lineWidth: modelData
            text: choice.what.arg(modelData)
            isOn: choice.current === index
            onClicked: choice.chosen(index)
        }
    }
}
