import QtQuick
import Velloran

/// A bar that fills from the left.
Item {
    id: root

    /// What it measures the progress of.
    required property string label
    /// From 0 to 1.
    required property real progress

    implicitHeight: 6

    Accessible.role: Accessible.ProgressBar
    Accessible.name: root.label
    Accessible.description: Math.round(root.progress * 100) + " %"

    RoundedFace {
        anchors.fill: parent
        radius: 3
        fill: Theme.fieldFill
        stroke: Theme.fieldStroke
    }

    RoundedFace {
        visible: root.progress > 0
        width: Math.max(height, root.width * root.progress)
        height: root.height
        radius: 3
        fill: Theme.accentBlue
    }
}
