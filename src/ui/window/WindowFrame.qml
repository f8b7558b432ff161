import QtQuick
import Velloran

/// What the desktop's own title bar would do, laid over the window: moving, resizing, the window buttons and the menu.
FocusScope {
    id: root

    required property Window window
    /// Height of the strip that moves the window.
    required property int titleHeight
    /// Whether the menu can be used.
    required property bool isMenuEnabled
    required property DesktopWindowButtons buttons
    /// The window manager's menu for the window; without one, the frame has its own.
    required property WindowManagerMenu managerMenu

    /// What the buttons take of the left end of the title bar.
    readonly property real leftInset: leftButtons.width > 0 ? leftButtons.x + leftButtons.width : 0
    readonly property bool isMovable: root.window.visibility !== Window.FullScreen
    readonly property bool isResizable: root.window.visibility === Window.Windowed

    readonly property int buttonMargin: 14

    signal optionsRequested
    signal aboutRequested
    signal quitRequested

    /// The frame's own.
    function smallMenu(): var {
        return windowMenu.get({ window: root.window, buttons: root.buttons });
    }

    DragArea {
        width: parent.width
        height: root.titleHeight
        dragEnabled: root.isMovable
        onDragStarted: place => {
            // What is pressed on an edge is the edge's, though the title bar sees it as well.
            if (!edges.visible || !edges.childAt(place.x, place.y))
                root.window.startSystemMove();
        }

        TapHandler {
            acceptedButtons: Qt.LeftButton
            gesturePolicy: TapHandler.DragThreshold
            onDoubleTapped: root.smallMenu().toggleMaximized()
        }

        TapHandler {
            acceptedButtons: Qt.RightButton
            gesturePolicy: TapHandler.DragThreshold
            onPressedChanged: {
                if (pressed)
                    root.managerMenu?.prepare();
            }
            onTapped: eventPoint => {
                if (!root.managerMenu?.show(root.window, eventPoint.scenePosition))
                    root.smallMenu().openAt(eventPoint.position);
            }
        }

        Connections {
            target: root.managerMenu

            function onMissing(place: point) {
                root.smallMenu().openAt(place);
            }
        }

        OnDemand {
            id: windowMenu

            source: "WindowMenu.qml"
        }
    }

    Item {
        id: edges

        anchors.fill: parent
        visible: root.isResizable

        Repeater {
            model: [Qt.TopEdge, Qt.BottomEdge, Qt.LeftEdge, Qt.RightEdge, Qt.TopEdge | Qt.LeftEdge,
                Qt.TopEdge | Qt.RightEdge, Qt.BottomEdge | Qt.LeftEdge, Qt.BottomEdge | Qt.RightEdge]

            ResizeHandle {
                required property int modelData

                window: root.window
                edges: modelData
            }
        }
    }

    WindowButtonGroup {
        id: leftButtons

        x: root.buttonMargin
        y: Math.round((root.titleHeight - height) / 2)
        window: root.window
        names: root.buttons.left
    }

    Row {
        x: root.width - width - root.buttonMargin
        y: Math.round((root.titleHeight - height) / 2)
        spacing: 4

        WindowButton {
            id: menuButton

            label: "Menu"
            systemImage: "window.menu"
            enabled: root.isMenuEnabled
            onTriggered: menu.get({ frame: root }).toggle(!menuButton.isPointerPress)
            Keys.onDownPressed: menu.get({ frame: root }).toggle(true)
            Accessible.role: Accessible.ButtonMenu

            OnDemand {
                id: menu

                source: "MainMenu.qml"
            }
        }

        WindowButtonGroup {
            window: root.window
            names: root.buttons.right
        }
    }

    // Four lines and not one border: that would be painted again as a whole with whatever changes in the window.
    Item {
        anchors.fill: parent
        visible: root.isResizable

        Divider {
            anchors.top: parent.top
            width: parent.width
        }

        Divider {
            anchors.bottom: parent.bottom
            width: parent.width
        }

        Divider {
            y: 1
            height: parent.height - 2
        }

        Divider {
            anchors.right: parent.right
            y: 1
            height: parent.height - 2
        }
    }
}
