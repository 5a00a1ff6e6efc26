import QtQuick
import QtQuick.Layouts
import Tallowby.Platform

/// A titled group of rows.
ColumnLayout {
    property alias title: heading.text

    spacing: Theme.spaceSmall

    Text {
        id: heading

        color: Theme.ink
        font.family: Theme.uiFamily
        font.pixelSize: Theme.bodySize
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
