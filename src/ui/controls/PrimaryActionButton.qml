import QtQuick
import Velloran

/// The large blue button for the main action.
FocusScope {
    id: root

    required property string title
    /// The name of the icon.
    required property string systemImage
    property bool disabled: false
    /// Shown while the pointer rests on the button, disabled or not.
    property string help: ""

    signal triggered()
    /// A pointer went down on the button. `ignorePress()` called from here keeps it from triggering.
    signal pointerPressed()

    function ignorePress() {
        button.ignorePress();
    }

    // 0…1. The pointer is followed whether the button is disabled or not.
    property real hover: pointer.hovered ? 1 : 0

    Behavior on hover {
        EaseInOut { seconds: 0.15 }
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
            color: Theme.accentBlue
            hover: root.hover
        }

        PlainButton {
            id: button

            anchors.fill: parent
            focus: true
            enabled: !root.disabled
            hasPointerLook: true
            label: root.title
            help: root.help
            isPointedAt: pointer.hovered
            implicitHeight: Math.max(52, button.implicitContentHeight + 12)
            leftPadding: Theme.spacing.md
            rightPadding: Theme.spacing.md
            onTriggered: root.triggered()
            onPointerPressed: root.pointerPressed()

            background: RoundedFace {
                radius: Theme.radius.button
                fill: Theme.accentBlue
                lowerFill: Theme.accentBlueDeep
                stroke: Theme.white(0.08 + 0.08 * root.hover)
            }

            contentItem: IconAndTitle {
                icon: root.systemImage
                iconSize: 16
                title: root.title
                titleSize: 17
            }
        }
    }
}
