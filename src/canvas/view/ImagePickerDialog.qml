import QtQuick.Dialogs

/// The dialogue for a picture, inside the window.
FileDialog {
    property bool isSaving: false

    title: isSaving ? qsTr("Save image as") : qsTr("Choose a picture")
    fileMode: isSaving ? FileDialog.SaveFile : FileDialog.OpenFile
    acceptLabel: isSaving ? qsTr("Save") : qsTr("Open")
    nameFilters: [qsTr("Pictures") + " (*.png *.jpg *.jpeg *.gif *.webp *.bmp *.svg)", qsTr("All files") + " (*)"]
    options: FileDialog.DontUseNativeDialog // qmllint disable
}
