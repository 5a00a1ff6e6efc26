pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// The looks of the panel that chooses a symbol.
IconPickerView {
    id: picker

    readonly property int cell: 40
    readonly property int hoveredIndex: grid.hovered
    readonly property string namedSymbol: hoveredIndex >= 0 && hoveredIndex < symbols.length ? symbols[hoveredIndex] : current >= 0 && current < symbols.length ? symbols[current] : ""

    searchField: search
    Component.onCompleted: grid.positionViewAtIndex(Math.max(0, current), GridView.Contain)
    onCurrentChanged: grid.positionViewAtIndex(Math.max(0, current), GridView.Contain)

    Rectangle {
        id: panel

        readonly property point corner: picker.placed(Qt.size(width, height), picker.aside, Qt.size(picker.width, picker.height))

        x: Math.round(corner.x)
        y: Math.round(corner.y)
        width: picker.columns * picker.cell + 2 * Theme.spaceCard
        height: caption.y + caption.height + Theme.spaceCard
        radius: Theme.radiusPanel
        color: Theme.surfaceRaised
        border { width: 1; color: Theme.hairline }
        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("Choose a symbol")

        SoftShadow {
            z: -1
            blur: 32
            drop: 8
            radius: Theme.radiusPanel
            strength: Theme.isDark ? 0.5 : 0.16
        }

        // Between its parts a press does nothing.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
        }

        Rectangle {
            id: field

            x: Theme.spaceCard
            y: Theme.spaceCard
            width: parent.width - 2 * Theme.spaceCard
            height: 34
            radius: Theme.radiusControl
            color: Theme.hoverWash
            border { width: search.activeFocus ? 2 : 1; color: search.activeFocus ? Theme.accent : Theme.hairline }

            Symbol {
                anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                name: "magnifyingglass"
                size: 14
            }

            TextInput {
                id: search

                anchors { fill: parent; leftMargin: 32; rightMargin: 10 }
                clip: true
                color: Theme.ink
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                maximumLength: 100
                selectByMouse: true
                selectedTextColor: Theme.ink
                selectionColor: Qt.alpha(Theme.accent, 0.3)
                text: picker.searchText
                verticalAlignment: TextInput.AlignVCenter
                onTextEdited: picker.searchText = text
                Keys.forwardTo: [picker]
                Accessible.role: Accessible.EditableText
                Accessible.name: placeholder.text
            }

            Text {
                id: placeholder

                anchors { left: search.left; verticalCenter: parent.verticalCenter }
                visible: !search.text && !search.preeditText
                color: Theme.inkSoft
                font: search.font
                text: qsTr("Search symbols")
                textFormat: Text.PlainText
            }
        }

        Row {
            id: categories

            z: 1
            x: Theme.spaceCard
            anchors { top: field.bottom; topMargin: Theme.spaceSmall }

            Repeater {
                model: ["square.grid", ...picker.categorySymbols]

                IconPickerCell {
                    id: entry

                    required property int index
                    required property string modelData

                    width: field.width / (picker.categories.length + 1)
                    height: 30
                    symbol: modelData
                    text: index > 0 ? picker.categories[index - 1] : qsTr("All")
                    isCurrent: picker.category === index - 1 && !picker.searchText
                    iconSize: 15
                    onChosen: picker.category = index - 1

                    Tip {
                        anchors { horizontalCenter: parent.horizontalCenter; top: parent.bottom; topMargin: Theme.spaceTight }
                        z: 1
                        text: entry.text
                        isWanted: entry.isHovered
                    }
                }
            }
        }

        Rectangle {
            id: rule

            anchors { top: categories.bottom; topMargin: Theme.spaceSmall }
            x: 1
            width: parent.width - 2
            height: 1
            color: Theme.hairline
        }

        GridView {
            id: grid

            property int hovered: -1

            x: Theme.spaceCard
            anchors { top: rule.bottom; topMargin: Theme.spaceTight }
            width: picker.columns * picker.cell
            height: 6 * picker.cell
            boundsBehavior: Flickable.StopAtBounds
            cellWidth: picker.cell
            cellHeight: picker.cell
            clip: true
            currentIndex: -1
            model: picker.symbols
            onModelChanged: hovered = -1
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Symbols")

            delegate: IconPickerCell {
                required property int index
                required property string modelData

                width: picker.cell
                height: picker.cell
                symbol: modelData
                text: picker.spoken(modelData)
                isCurrent: picker.current === index
                iconSize: 20
                onIsHoveredChanged: grid.hovered = isHovered ? index : grid.hovered === index ? -1 : grid.hovered
                onChosen: picker.choose(index)
            }

            Text {
                anchors.centerIn: parent
                visible: grid.count === 0
                color: Theme.inkSoft
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                text: qsTr("No symbol is found by these words")
                textFormat: Text.PlainText
            }
        }

        Text {
            id: caption

            anchors { top: grid.bottom; topMargin: Theme.spaceSmall; horizontalCenter: parent.horizontalCenter }
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            text: picker.spoken(picker.namedSymbol)
            textFormat: Text.PlainText
        }
    }
}
