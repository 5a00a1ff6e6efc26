import QtQuick
import Tallowby.Blocks

/// A text at rest in which links are underlined. It leaves the pointer to the body.
TextEdit {
    /// 0 leaves every line its own width.
    property real boundedWidth: 0
    /// Where it has to be filled: texts that are written from the right begin at its end.
    property real room: 0
    property bool breaksWords: false
    property alias isStruck: lines.isStruck

    enabled: false
    readOnly: true
    activeFocusOnPress: false
    padding: 0
    textFormat: TextEdit.PlainText
    width: boundedWidth > 0 ? boundedWidth : Math.max(implicitWidth, room)
    wrapMode: boundedWidth === 0 ? TextEdit.NoWrap : breaksWords ? TextEdit.WrapAnywhere : TextEdit.Wrap
    Accessible.ignored: true

    StruckLines { id: lines }
}
