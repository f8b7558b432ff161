import QtQuick
import Velloran

/// The menu of the window's frame.
PopupMenu {
    id: root

    required property Window window
    required property DesktopWindowButtons buttons

    readonly property bool isLarge: root.window.visibility === Window.Maximized || root.window.visibility === Window.FullScreen
    readonly property bool canToggle: root.isLarge || root.buttons.maximizes

    function toggleMaximized() {
        if (root.isLarge)
            root.window.showNormal();
        else if (root.canToggle)
            root.window.showMaximized();
    }

    PopupMenuItem {
        label: "Minimize"
        enabled: root.buttons.minimizes
        onTriggered: root.window.showMinimized()
    }

    PopupMenuItem {
        label: root.isLarge ? "Restore" : "Maximize"
        enabled: root.canToggle
        onTriggered: root.toggleMaximized()
    }

    MenuDivider {}

    PopupMenuItem {
        label: "Close"
        onTriggered: root.window.close()
    }
}
