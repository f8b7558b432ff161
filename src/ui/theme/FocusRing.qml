import QtQuick

/// The ring around the control that has the keyboard. It lies outside the control and takes no space.
Rectangle {
    id: root

    /// The control's `visualFocus`: a pointer leaves no ring behind.
    required property bool shown
    /// Corner radius of what the ring goes around.
    property real around: Theme.radius.field
    /// The gap between the two.
    property real gap: 2

    anchors.fill: parent
    anchors.margins: -root.gap - root.border.width
    visible: root.shown
    radius: root.around + root.gap + root.border.width
    color: "transparent"
    border.width: 2
    border.color: Theme.accentBlue
    antialiasing: true
}
