import QtQuick
import Velloran

/// The large quiet button that turns red and glows while it is `active`.
FocusScope {
    id: root

    required property string title
    /// The name of the icon.
    required property string systemImage
    property bool disabled: false
    property bool active: false

    signal triggered()

    // Each 0…1. The pointer is followed whether the button is disabled or not.
    property real hover: pointer.hovered ? 1 : 0
    property real activity: root.active ? 1 : 0

    readonly property color quietFill: Theme.mixed(Theme.fieldFill, Theme.cardFillHover, root.hover)

    Behavior on hover {
        EaseInOut { seconds: 0.15 }
    }
    Behavior on activity {
        EaseInOut { seconds: 0.2 }
    }

    implicitWidth: button.implicitWidth
    implicitHeight: button.implicitHeight

    HoverHandler {
        id: pointer
    }

    FadedGroup {
        anchors.fill: parent
        strength: root.disabled ? 0.45 : 1
        reach: glow.reach

        HoverShadow {
            id: glow

            anchors.fill: parent
            radius: Theme.radius.button
            color: Theme.statusError
            hover: root.hover
            opacity: root.activity
            visible: root.activity > 0
        }

        PlainButton {
            id: button

            anchors.fill: parent
            focus: true
            enabled: !root.disabled
            hasPointerLook: true
            label: root.title
            implicitHeight: Math.max(46, button.implicitContentHeight + 12)
            leftPadding: Theme.spacing.md
            rightPadding: Theme.spacing.md
            onTriggered: root.triggered()

            background: RoundedFace {
                radius: Theme.radius.button
                fill: Theme.mixed(root.quietFill, Theme.statusError, root.activity)
                lowerFill: Theme.mixed(root.quietFill, Theme.faded(Theme.statusError, 0.78), root.activity)
                stroke: Theme.mixed(Theme.cardStrokeStrong, Theme.white(0.08 + 0.08 * root.hover), root.activity)
            }

            contentItem: IconAndTitle {
                icon: root.systemImage
                iconSize: 15
                title: root.title
                titleSize: 16
            }
        }
    }
}
