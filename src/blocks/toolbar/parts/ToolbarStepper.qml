import QtQuick
import Tallowby.Platform

/// A number between a minus and a plus.
Row {
    id: stepper

    required property string figure
    property bool canStepDown: true
    property bool canStepUp: true
    property alias downText: down.text
    property alias upText: up.text

    signal stepDown()
    signal stepUp()

    ToolbarButton {
        id: down

        symbol: "minus"
        isToggle: false
        enabled: stepper.canStepDown
        onClicked: stepper.stepDown()
    }

    Item {
        width: 30
        height: 28

        TabularText {
            anchors.centerIn: parent
            text: stepper.figure
        }
    }

    ToolbarButton {
        id: up

        symbol: "plus"
        isToggle: false
        enabled: stepper.canStepUp
        onClicked: stepper.stepUp()
    }
}
