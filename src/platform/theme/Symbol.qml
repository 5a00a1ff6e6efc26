import QtQuick
import Tallowby.Platform

/// A symbol by name, tinted. Drawn at twice its size, so that it stays sharp on a canvas that is zoomed in.
Image {
    id: symbol

    required property string name
    property color color: Theme.inkSoft
    property int size: Theme.iconSmall

    width: size
    height: size
    source: "image://theme/symbol/" + name + "/" + color.toString().slice(1)
    sourceSize { width: 2 * symbol.size; height: 2 * symbol.size }
}
