import QtQuick

/// Tells once for each press that the pointer has begun to drag.
///
/// When the window system takes a drag over, to move or resize the window, the release that ends it comes with a leap, as the
/// window has gone elsewhere meanwhile. That would look like the beginning of another drag, one without a button held down,
/// which lasts until the next press and swallows it.
Item {
    id: root

    property alias dragThreshold: dragHandler.dragThreshold
    property alias dragEnabled: dragHandler.enabled

    signal dragStarted

    PointHandler {
        id: pressHandler

        property bool isDragKnown: false

        acceptedButtons: Qt.LeftButton
        onActiveChanged: {
            if (active)
                isDragKnown = false;
        }
    }

    DragHandler {
        id: dragHandler

        target: null
        onActiveChanged: {
            if (active && !pressHandler.isDragKnown) {
                pressHandler.isDragKnown = true;
                root.dragStarted();
            }
        }
    }
}
