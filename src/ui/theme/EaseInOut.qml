import QtQuick

/// The pace of transitions that start and end gently.
NumberAnimation {
    id: root

    /// How long the whole way takes.
    required property real seconds

    duration: Theme.duration(root.seconds)
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.easeInOut
}
