import QtQuick

/// One half of a segmented toggle.
PlainButton {
    id: root

    required property bool selected

    size: 14
    leftPadding: Theme.spacing.sm
    rightPadding: Theme.spacing.sm
    topPadding: Theme.spacing.xs
    bottomPadding: Theme.spacing.xs
    implicitHeight: Math.max(38, root.implicitContentHeight + root.topPadding + root.bottomPadding)
    color: root.selected ? Theme.accentBlue : Theme.textSecondary

    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: root.selected
    Accessible.onToggleAction: root.activate()

    Behavior on color {
        ColorEase { seconds: 0.18 }
    }

    background: RoundedFace {
        radius: Theme.radius.button
        fill: root.selected ? Theme.accentBlueSoft : Theme.fieldFill
        stroke: root.selected ? Theme.accentBlueBorder : Theme.fieldStroke

        Behavior on fill {
            ColorEase { seconds: 0.18 }
        }
        Behavior on stroke {
            ColorEase { seconds: 0.18 }
        }
    }
}
