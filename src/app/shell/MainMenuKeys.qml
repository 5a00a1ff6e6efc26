pragma ComponentBehavior: Bound

import QtQml
import QtQuick
import Tallowby.App

/// The keys of the program's own items. Those of editing are handled by whatever is edited.
Instantiator {
    id: keys

    required property MainMenu menu

    model: menu.applicationItems

    Shortcut {
        required property mainMenuItem modelData
        required property int index

        context: Qt.ApplicationShortcut
        sequence: modelData.keys
        onActivated: keys.menu.chooseApplicationItem(index)
    }
}
