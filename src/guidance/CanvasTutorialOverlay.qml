pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Guidance
import Tallowby.Platform

/// A card beside what it tells of. Where it is not, the canvas is as ever.
CanvasTutorialOverlayView {
    id: overlay

    anchors.fill: parent
    cardSize: Qt.size(card.width, card.height)
    opacity: isActive ? 1 : 0
    visible: opacity > 0
    onStepChanged: turning.restart()

    Behavior on opacity {
        NumberAnimation { duration: Theme.motionOut; easing.type: Easing.OutQuad }
    }

    Rectangle {
        x: overlay.miniMapFrame.x - 4
        y: overlay.miniMapFrame.y - 4
        width: overlay.miniMapFrame.width + 8
        height: overlay.miniMapFrame.height + 8
        radius: Theme.radiusCard + 4
        color: "transparent"
        border { width: 3; color: Theme.accent }
        opacity: overlay.isMiniMapHighlighted ? 1 : 0
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation { duration: 2 * Theme.motionIn; easing.type: Easing.OutQuad }
        }
    }

    Item {
        id: card

        readonly property bool moves: overlay.isActive && overlay.step > 0 && !overlay.reducesMotion

        x: overlay.cardPosition.x
        y: overlay.cardPosition.y
        width: Math.min(360, overlay.width - 2 * Theme.spaceWindow)
        height: words.y + words.implicitHeight + Theme.spacePanel + buttons.height + Theme.spacePanel
        enabled: overlay.isActive
        Accessible.role: Accessible.Dialog
        Accessible.name: overlay.title
        Accessible.description: overlay.hint ? overlay.body + " " + overlay.hint : overlay.body

        Behavior on x {
            enabled: card.moves
            NumberAnimation { duration: Theme.cardSpringDuration; easing: Theme.cardSpring }
        }
        Behavior on y {
            enabled: card.moves
            NumberAnimation { duration: Theme.cardSpringDuration; easing: Theme.cardSpring }
        }

        SoftShadow {
            blur: 32
            drop: 8
            radius: Theme.radiusPanel
            strength: Theme.isDark ? 0.5 : 0.16
        }

        // What points at the mini map.
        Rectangle {
            x: parent.width - 100 - width / 2
            y: parent.height - height / 2 - 3
            width: 16
            height: 16
            rotation: 45
            visible: overlay.isLast
            antialiasing: true
            color: Theme.surfaceRaised
            border { width: 1; color: Theme.hairline }
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusPanel
            color: Theme.surfaceRaised
            border { width: 1; color: Theme.hairline }
        }

        // Over the seam between the card and what points.
        Rectangle {
            x: parent.width - 100 - width / 2
            y: parent.height - height - 1
            width: 20
            height: 4
            visible: overlay.isLast
            color: Theme.surfaceRaised
        }

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onWheel: (wheel) => wheel.accepted = true
        }

        Column {
            id: words

            x: Theme.spaceWindow - 4
            y: Theme.spaceWindow - 4
            width: parent.width - 2 * x
            spacing: Theme.spaceSmall

            Rectangle {
                width: 36
                height: 36
                radius: Theme.radiusCard
                color: Theme.accentTint

                Symbol {
                    anchors.centerIn: parent
                    name: overlay.symbol
                    size: Theme.iconLarge
                    color: Theme.accent
                }
            }

            Text {
                width: parent.width
                topPadding: Theme.spaceTight
                color: Theme.ink
                font { family: Theme.uiFamily; pixelSize: Theme.titleSize; weight: Font.DemiBold }
                text: overlay.title
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }

            Text {
                width: parent.width
                color: Theme.inkSoft
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                lineHeight: 1.35
                text: overlay.body
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }

            Text {
                width: parent.width
                topPadding: Theme.spaceTight
                visible: text
                color: Theme.accent
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize; weight: Font.Medium }
                text: overlay.hint
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }
        }

        Item {
            id: buttons

            anchors { left: words.left; right: words.right; bottom: parent.bottom; bottomMargin: Theme.spacePanel }
            height: 32

            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 6
                Accessible.role: Accessible.StaticText
                Accessible.name: qsTr("Step %1 of %2").arg(overlay.step + 1).arg(overlay.stepCount)

                Repeater {
                    model: overlay.stepCount

                    Rectangle {
                        required property int index

                        width: 6
                        height: 6
                        radius: 3
                        color: index === overlay.step ? Theme.accent : Theme.hairline
                    }
                }
            }

            Row {
                anchors.right: parent.right
                spacing: Theme.spaceSmall

                LinkButton {
                    anchors.verticalCenter: parent.verticalCenter
                    rightPadding: Theme.spaceSmall
                    text: qsTr("Skip")
                    visible: !overlay.isLast
                    onClicked: overlay.finish()
                }

                QuietButton {
                    text: qsTr("Show Me")
                    visible: overlay.isLast && overlay.canShowMiniMap
                    onClicked: overlay.showMiniMap()
                }

                QuietButton {
                    text: qsTr("Next")
                    visible: overlay.hint
                    onClicked: overlay.advance()
                }

                PrimaryButton {
                    text: overlay.isLast ? qsTr("Done") : qsTr("Next")
                    visible: !overlay.hint
                    onClicked: overlay.advance()
                }
            }
        }
    }

    NumberAnimation {
        id: turning

        target: words
        property: "opacity"
        from: 0
        to: 1
        duration: 2 * Theme.motionIn
        easing.type: Easing.OutQuad
    }
}
