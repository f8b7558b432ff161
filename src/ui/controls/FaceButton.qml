import QtQuick
import Velloran

/// A button on a rounded face: its label, and an icon before it where one is named.
PlainButton {
    id: root

    /// The name of the icon, or nothing.
    property string systemImage: ""
    property real iconSize: 12
    property color fill: Theme.fieldFill
    property color stroke: Theme.fieldStroke

    leftPadding: 12
    rightPadding: 12
    topPadding: 9
    bottomPadding: 9

    background: RoundedFace {
        radius: root.faceRadius
        fill: root.fill
        stroke: root.stroke
    }

    contentItem: FaceContent {
        systemImage: root.systemImage
        iconSize: root.iconSize
        label: root.label
        size: root.size
        weight: root.weight
        color: root.color
    }
}
