import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Tallowby.Platform

/// Something that is on or off, with a second line that says what that means now. Its state is what is told to it: a
/// click only asks.
AbstractButton {
    id: row

    property string detail
    property bool isOn: false
    /// What went wrong the last time; stands in the place of the detail.
    property string problem

    signal wanted(bool on)

    implicitHeight: Math.max(40, implicitContentHeight + 8)
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.description: problem ? problem : detail
    Accessible.checkable: true
    Accessible.checked: isOn
    onClicked: row.wanted(!row.isOn)

    background: FocusRing { isShown: row.visualFocus; radius: Theme.radiusControl; anchors.margins: -2 }
    contentItem: RowLayout {
        spacing: Theme.spacePanel

        ColumnLayout {
            Layout.alignment: Qt.AlignVCenter
            spacing: 2

            Text {
                Layout.fillWidth: true
                text: row.text
                color: Theme.ink
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            }

            Text {
                Layout.fillWidth: true
                visible: text.length > 0
                text: row.problem ? row.problem : row.detail
                color: row.problem ? Theme.danger : Theme.inkSoft
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            }
        }

        Rectangle {
            Layout.preferredWidth: 36
            Layout.preferredHeight: 20
            radius: 10
            opacity: row.enabled ? 1 : 0.45
            color: row.isOn ? Theme.accent : row.hovered ? Theme.pressWash : Theme.hoverWash
            border { width: row.isOn ? 0 : 1; color: Theme.inkSoft }

            Rectangle {
                x: row.isOn ? parent.width - width - 3 : 3
                anchors.verticalCenter: parent.verticalCenter
                width: 14
                height: 14
                radius: 7
                color: row.isOn ? Theme.accentInk : Theme.inkSoft
            }
        }
    }
}
