import QtQuick
import Tallowby.Canvas

BlockContainerView {
    id: container

    Accessible.role: accessibleRole
    Accessible.name: accessibleName
    Accessible.description: accessibleDescription
}
