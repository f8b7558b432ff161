import QtQuick

/// A filled rounded rectangle with its border drawn inside the edge and over the fill, so that a translucent border takes its
/// tint from the fill and not from what lies behind.
Item {
    id: root

    property color fill: "transparent"
    /// Drawn instead of `fill` where there is one.
    property Gradient gradient: null
    property color stroke: "transparent"
    property real strokeWidth: 1
    property real radius: Theme.radius.field

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: root.fill
        gradient: root.gradient
        antialiasing: true
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        border.width: root.strokeWidth
        border.color: root.stroke
        antialiasing: true
    }
}
