import QtQuick

/// The large blue button for the main action.
ActionButton {
    id: root

    leastHeight: 52
    iconSize: 16
    titleSize: 17
    fill: Theme.accentBlue
    lowerFill: Theme.accentBlueDeep
    stroke: Theme.white(0.08 + 0.08 * root.hover)
    glowColor: Theme.accentBlue
}
