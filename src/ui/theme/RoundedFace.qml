import QtQuick

/// A filled rounded rectangle with its border drawn inside the edge and over the fill, so that a translucent border takes its
/// tint from the fill and not from what lies behind.
Item {
    id: root

    property color fill: "transparent"
    property color stroke: "transparent"
    property real strokeWidth: 1
    property real radius: Theme.radius.field

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: root.fill
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
