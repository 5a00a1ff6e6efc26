pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// One level of a menu.
Rectangle {
    id: panel

    required property ContextMenuView menu
    /// Null while there is nothing to show.
    required property MenuEntriesModel entries
    readonly property Item currentRow: rows.itemAt(entries ? entries.current : -1)
    /// The current row in the menu, as wide as the panel.
    readonly property rect rowRect: Qt.rect(x, y + column.y + (currentRow ? currentRow.y : 0), width, currentRow ? currentRow.height : 0)

    width: column.width + 2 * column.x
    height: column.height + 2 * column.y
    visible: entries
    radius: Theme.radiusCard
    color: Theme.surfaceRaised
    border { width: 1; color: Theme.hairline }
    Accessible.role: Accessible.PopupMenu
    Accessible.name: qsTr("Menu")

    NumberAnimation on opacity {
        running: panel.visible
        from: 0
        to: 1
        duration: Theme.motionIn
        easing.type: Easing.OutQuad
    }

    SoftShadow {
        z: -1
        blur: 32
        drop: 8
        radius: panel.radius
        strength: Theme.isDark ? 0.5 : 0.16
    }

    // Between the rows a press does nothing.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
    }

    Column {
        id: column

        x: 5
        y: 5
        width: Math.max(180, ...[...Array(rows.count).keys()].map(row => rows.itemAt(row).implicitWidth))

        Repeater {
            id: rows

            model: panel.entries

            MenuRow {
                width: column.width
                isCurrent: panel.entries && panel.entries.current === index
                onHovered: (point) => panel.menu.hover(panel.entries, index, panel.menu.mapFromItem(null, point))
                onChosen: panel.menu.choose(panel.entries, index)
            }
        }
    }
}
