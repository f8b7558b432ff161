import QtQuick

/// The menu of the window's frame.
PopupMenu {
    id: root

    required property Window window

    readonly property bool isLarge: root.window.visibility === Window.Maximized || root.window.visibility === Window.FullScreen

    function toggleMaximized() {
        if (root.isLarge)
            root.window.showNormal();
        else
            root.window.showMaximized();
    }

    PopupMenuItem {
        label: "Minimize"
        onTriggered: root.window.showMinimized()
    }

    PopupMenuItem {
        label: root.isLarge ? "Restore" : "Maximize"
        onTriggered: root.toggleMaximized()
    }

    MenuDivider {}

    PopupMenuItem {
        label: "Close"
        onTriggered: root.window.close()
    }
}
