import QtQuick

/// Tells once for each press that the pointer has begun to drag.
///
/// It only watches. When the window system takes a drag over, to move or resize the window, it may keep the release that ends it
/// for itself, or send it with a leap, as the window has gone elsewhere meanwhile. Whoever had grabbed the pointer would hold it
/// until the next press, and swallow that.
Item {
    id: root

    /// How far the pointer has to go, in points.
    property alias dragThreshold: pressHandler.dragThreshold
    property alias dragEnabled: pressHandler.enabled

    /// The press was at that place of the window.
    signal dragStarted(place: point)

    PointHandler {
        id: pressHandler

        property bool isDragKnown: false

        acceptedButtons: Qt.LeftButton
        onPointChanged: {
            const across = Math.abs(point.scenePosition.x - point.scenePressPosition.x);
            const down = Math.abs(point.scenePosition.y - point.scenePressPosition.y);
            const way = Math.max(across, down);
            // A press that nobody has ended goes over into the next one, which begins where it is pressed.
            if (way === 0) {
                isDragKnown = false;
            } else if (active && !isDragKnown && way > dragThreshold) {
                isDragKnown = true;
                root.dragStarted(point.scenePressPosition);
            }
        }
    }
}
