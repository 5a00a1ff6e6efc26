import QtQuick

/// The soft shadow of the rounded surface that it fills; goes below the surface among its siblings.
BorderImage {
    id: shadow

    property int blur: 12
    property int drop: 2
    property real strength: 0.08
    property int radius: 10

    anchors.fill: parent
    anchors.margins: -blur
    anchors.topMargin: -blur + drop
    anchors.bottomMargin: -blur - drop
    border { left: blur + radius; right: blur + radius; top: blur + radius; bottom: blur + radius }
    source: "image://theme/shadow/" + blur + "/" + radius + "/" + Screen.devicePixelRatio
    opacity: strength
}
