import QtQuick
import Tallowby.Blocks

TextFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarButton { symbol: "bold"; text: qsTr("Bold"); isOn: toolbar.isBold; onClicked: toolbar.toggleBold() }
        ToolbarButton { symbol: "italic"; text: qsTr("Italic"); isOn: toolbar.isItalic; onClicked: toolbar.toggleItalic() }
        ToolbarButton { symbol: "strikethrough"; text: qsTr("Strikethrough"); isOn: toolbar.isStrikethrough; onClicked: toolbar.toggleStrikethrough() }

        ToolbarRule {}

        ToolbarStepper {
            figure: toolbar.fontSize
            canStepDown: toolbar.canShrink
            canStepUp: toolbar.canGrow
            downText: qsTr("Smaller")
            upText: qsTr("Larger")
            onStepDown: toolbar.shrink()
            onStepUp: toolbar.grow()
        }

        ToolbarRule {}

        ToolbarSwatches { colors: toolbar.colors; current: toolbar.color; what: qsTr("Text colour"); onChosen: (place) => toolbar.chooseColor(place) }
    }
}
