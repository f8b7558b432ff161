import QtQuick

/// Moves one property of something there and back for ever while it `moves`, and lets it settle at 0 when that ends.
Item {
    id: root

    required property Item target
    required property string property
    /// The far end of the way, which starts at 0.
    required property real reach
    /// How long one way takes. Not shortened: reduced motion is no `moves` at all.
    required property real seconds
    required property bool moves
    /// Stands still on the spot for as long as this is set, without using any time.
    required property bool isHeld

    onMovesChanged: root.moves ? settling.stop() : settling.restart()

    SequentialAnimation {
        loops: Animation.Infinite
        running: root.moves
        paused: root.moves && root.isHeld

        NumberAnimation {
            target: root.target
            property: root.property
            to: root.reach
            duration: root.seconds * 1000
            easing.type: Easing.BezierSpline
            easing.bezierCurve: Theme.easeInOut
        }

        NumberAnimation {
            target: root.target
            property: root.property
            to: 0
            duration: root.seconds * 1000
            easing.type: Easing.BezierSpline
            easing.bezierCurve: Theme.easeInOut
        }
    }

    NumberAnimation {
        id: settling

        target: root.target
        property: root.property
        to: 0
        duration: Theme.duration(0.4)
        easing.type: Easing.BezierSpline
        easing.bezierCurve: Theme.easeOut
    }
}
