import QtQuick
import Velloran

/// The ring around the control that has the keyboard. It lies outside the control and takes no space.
RoundedFace {
    id: root

    /// The control's `visualFocus`: a pointer leaves no ring behind.
    required property bool shown
    /// Corner radius of what the ring goes around.
    property real around: Theme.radius.field
    /// The gap between the two.
    property real gap: 2

    anchors.fill: parent
    anchors.margins: -root.gap - root.strokeWidth
    visible: root.shown
    radius: root.around + root.gap + root.strokeWidth
    stroke: Theme.accentBlue
    strokeWidth: 2
}
