import QtQuick
import Tallowby.Platform

/// A symbol by name, tinted.
Image {
    id: symbol

    required property string name
    property color color: Theme.inkSoft
    property int size: Theme.iconSmall
    /// Pixels of the picture per point: from one to two for each pixel that is shown, else fine lines fall between
    /// those.
    property real detail: 2

    width: size
    height: size
    source: "image://theme/symbol/" + name + "/" + color.toString().slice(1)
    sourceSize { width: symbol.detail * symbol.size; height: symbol.detail * symbol.size }
}
