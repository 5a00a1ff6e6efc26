import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

SelectionChromeView {
    id: chrome

    Rectangle {
        id: stem

        x: Math.round(chrome.rotationHandle.x - width / 2)
        y: Math.round(chrome.rotationHandle.y)
        width: 2
        height: Math.round(chrome.stemLength + chrome.handleSize / 2)
        visible: chrome.areHandlesShown
        antialiasing: chrome.angle !== 0
        color: Theme.accent
        rotation: chrome.angle
        transformOrigin: Item.Top
    }

    SelectionHandle { middle: chrome.rotationHandle; size: chrome.handleSize; visible: chrome.areHandlesShown }
    SelectionHandle { middle: chrome.topLeft; size: chrome.handleSize; visible: chrome.areHandlesShown }
    SelectionHandle { middle: chrome.topRight; size: chrome.handleSize; visible: chrome.areHandlesShown }
    SelectionHandle { middle: chrome.bottomLeft; size: chrome.handleSize; visible: chrome.areHandlesShown }
    SelectionHandle { middle: chrome.bottomRight; size: chrome.handleSize; visible: chrome.areHandlesShown }

    DashedOutline {
        x: chrome.groupFrame.x
        y: chrome.groupFrame.y
        width: chrome.groupFrame.width
        height: chrome.groupFrame.height
        visible: chrome.groupFrame.width > 0
        color: Theme.accent
    }
}
