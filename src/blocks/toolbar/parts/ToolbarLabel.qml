import QtQuick
import Tallowby.Platform

/// The name of a section.
Text {
    height: 28
    leftPadding: Theme.spaceTight
    rightPadding: Theme.spaceTight
    verticalAlignment: Text.AlignVCenter
    color: Theme.inkSoft
    font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.Medium }
    textFormat: Text.PlainText
}
