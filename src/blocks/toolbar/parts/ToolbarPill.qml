import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// The ground of a toolbar, with its parts in a row.
FloatingPill {
    id: pill

    default property alias parts: row.data

    implicitWidth: row.implicitWidth + 2 * row.x
    implicitHeight: 36

    Row {
        id: row

        x: Theme.spaceSmall
        y: 4
    }
}
