import QtQuick
import Tallowby.Canvas

/// The looks of the menu: a panel, and one for the children of the current row beside it.
ContextMenuView {
    id: menu

    MenuPanel {
        id: panel

        readonly property point corner: menu.placed(Qt.size(width, height), Qt.rect(menu.point.x, menu.point.y, 0, 0), Qt.size(menu.width, menu.height))

        x: corner.x
        y: corner.y
        menu: menu
        entries: menu.entries
    }

    MenuPanel {
        readonly property rect row: panel.rowRect
        readonly property point corner: menu.placed(Qt.size(width, height), row, Qt.size(menu.width, menu.height))

        x: corner.x
        y: corner.y
        menu: menu
        entries: menu.children
    }
}
