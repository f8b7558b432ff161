import QtQuick

/// The large quiet button that turns red and glows while it is `active`.
ActionButton {
    id: root

    property bool active: false

    // 0…1.
    property real activity: root.active ? 1 : 0

    readonly property color quietFill: Theme.mixed(Theme.fieldFill, Theme.cardFillHover, root.hover)

    Behavior on activity {
        EaseInOut { seconds: 0.2 }
    }

    leastHeight: 46
    iconSize: 15
    titleSize: 16
    fill: Theme.mixed(root.quietFill, Theme.statusError, root.activity)
    lowerFill: Theme.mixed(root.quietFill, Theme.faded(Theme.statusError, 0.78), root.activity)
    stroke: Theme.mixed(Theme.cardStrokeStrong, Theme.white(0.08 + 0.08 * root.hover), root.activity)
    glowColor: Theme.statusError
    glowStrength: root.activity
}
