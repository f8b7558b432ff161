import QtQuick

/// All the choices of the mouse button.
PopupMenu {
    id: root

    /// What it belongs to.
    required property MouseButtonSelect chooser

    leastWidth: root.chooser.width
    chosenIndex: root.chooser.selection

    PopupMenuItem {
        label: root.chooser.names[0]
        systemImage: root.chooser.icons[0]
        onTriggered: root.chooser.selected(0)
    }

    PopupMenuItem {
        label: root.chooser.names[1]
        systemImage: root.chooser.icons[1]
        onTriggered: root.chooser.selected(1)
    }

    PopupMenuItem {
        label: root.chooser.names[2]
        systemImage: root.chooser.icons[2]
        onTriggered: root.chooser.selected(2)
    }
}
