import QtQuick
import Tallowby.Blocks

ShapeFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarLabel { text: qsTr("Fill") }
        ToolbarSwatches { colors: toolbar.fills; current: toolbar.fill; what: qsTr("Fill"); onChosen: (place) => toolbar.chooseFill(place) }

        ToolbarRule {}

        ToolbarLabel { text: qsTr("Stroke") }
        ToolbarSwatches { colors: toolbar.colors; current: toolbar.color; what: qsTr("Stroke"); onChosen: (place) => toolbar.chooseColor(place) }

        ToolbarRule {}

        ToolbarLabel { text: qsTr("Weight") }
        ToolbarStepper {
            figure: toolbar.weight
            canStepDown: toolbar.canThin
            canStepUp: toolbar.canThicken
            downText: qsTr("Thinner")
            upText: qsTr("Thicker")
            onStepDown: toolbar.changeStrokeWidth(-0.5)
            onStepUp: toolbar.changeStrokeWidth(0.5)
        }

        ToolbarRule {}

        ToolbarLabel { text: qsTr("Label") }
        ToolbarStepper {
            figure: toolbar.fontSize
            canStepDown: toolbar.canShrink
            canStepUp: toolbar.canGrow
            downText: qsTr("Smaller")
            upText: qsTr("Larger")
            onStepDown: toolbar.shrink()
            onStepUp: toolbar.grow()
        }
    }
}
