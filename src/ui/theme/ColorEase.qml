import QtQuick

/// The pace of a change of colour that starts and ends gently.
ColorAnimation {
    id: root

    /// How long the whole way takes.
    required property real seconds

    duration: Theme.duration(root.seconds)
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.easeInOut
}
