import QtQuick
import Velloran

/// What the large buttons have in common: a glowing face that fades as one thing while it is disabled.
FocusScope {
    id: root

    required property string title
    /// The name of the icon.
    required property string systemImage
    property bool disabled: false
    /// Shown while the pointer rests on the button, disabled or not.
    property string help: ""

    required property int leastHeight
    required property real iconSize
    required property real titleSize
    required property color fill
    required property color lowerFill
    required property color stroke
    required property color glowColor
    /// How strong the glow is, 0…1.
    property real glowStrength: 1

    signal triggered()
    /// A pointer went down on the button. `ignorePress()` called from here keeps it from triggering.
    signal pointerPressed()

    // 0…1. The pointer is followed whether the button is disabled or not.
    property real hover: pointer.hovered ? 1 : 0

    function ignorePress() {
        button.ignorePress();
    }

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
            color: root.glowColor
            hover: root.hover
            opacity: root.glowStrength
            visible: root.glowStrength > 0
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
            implicitHeight: Math.max(root.leastHeight, button.implicitContentHeight + 12)
            leftPadding: Theme.spacing.md
            rightPadding: Theme.spacing.md
            onTriggered: root.triggered()
            onPointerPressed: root.pointerPressed()

            background: RoundedFace {
                radius: Theme.radius.button
                fill: root.fill
                lowerFill: root.lowerFill
                stroke: root.stroke
            }

            contentItem: IconAndTitle {
                icon: root.systemImage
                iconSize: root.iconSize
                title: root.title
                titleSize: root.titleSize
            }
        }
    }
}
