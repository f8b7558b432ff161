import QtQuick
import QtQuick.Templates as T

/// A view that scrolls up and down when what it holds is too tall: by wheel, touch, scroll bar, the page keys, and by itself to
/// whatever gets the keyboard focus by a key. Pressing and dragging with a mouse scrolls nothing, as on any desktop.
Flickable {
    id: root

    function scrollTo(position: real) {
        root.contentY = Math.max(0, Math.min(position, root.contentHeight - root.height));
    }

    contentWidth: root.width
    interactive: false
    clip: true

    onHeightChanged: root.scrollTo(root.contentY)
    onContentHeightChanged: root.scrollTo(root.contentY)

    Keys.onPressed: event => {
        const page = root.height - 2 * Theme.spacing.xl;
        if (event.key === Qt.Key_PageDown)
            root.scrollTo(root.contentY + page);
        else if (event.key === Qt.Key_PageUp)
            root.scrollTo(root.contentY - page);
        else
            return;
        event.accepted = true;
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        // One notch of a wheel is 120; three lines of text are about 60 points.
        onWheel: event => root.scrollTo(root.contentY - (event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 2))
    }

    DragHandler {
        property real begin: 0

        target: null
        acceptedDevices: PointerDevice.TouchScreen
        xAxis.enabled: false
        onActiveChanged: begin = root.contentY
        onTranslationChanged: root.scrollTo(begin - translation.y)
    }

    T.ScrollBar.vertical: T.ScrollBar {
        id: bar

        parent: root
        x: root.width - bar.width - 3
        height: root.height
        padding: 3
        implicitWidth: 12
        visible: root.contentHeight > root.height
        minimumSize: 0.1

        contentItem: Rectangle {
            implicitWidth: 6
            radius: 3
            color: Theme.white(bar.pressed ? 0.3 : bar.hovered ? 0.22 : 0.12)
        }
    }

    // Above all else: it has to know of a press before what is pressed takes the focus.
    Item {
        parent: root
        anchors.fill: parent
        z: 1

        PointHandler {
            id: press

            acceptedButtons: Qt.AllButtons
        }
    }

    ScrollToFocus {
        view: root
        isHeld: press.active
    }
}
