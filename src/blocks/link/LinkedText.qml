import QtQuick

/// A text at rest in which links are underlined. It leaves the pointer to the body.
TextEdit {
    /// 0 leaves every line its own width.
    property real boundedWidth: 0
    property bool breaksWords: false

    enabled: false
    readOnly: true
    activeFocusOnPress: false
    padding: 0
    textFormat: TextEdit.PlainText
    width: boundedWidth > 0 ? boundedWidth : implicitWidth
    wrapMode: boundedWidth === 0 ? TextEdit.NoWrap : breaksWords ? TextEdit.WrapAnywhere : TextEdit.Wrap
    Accessible.ignored: true
}
