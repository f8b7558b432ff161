import QtQuick

/// The program's own menu.
PopupMenu {
    id: root

    /// What it belongs to.
    required property WindowFrame frame

    endsRight: true

    PopupMenuItem {
        label: "Presets and Options…"
        onTriggered: root.frame.optionsRequested()
    }

    PopupMenuItem {
        label: "About Velloran"
        onTriggered: root.frame.aboutRequested()
    }

    MenuDivider {}

    PopupMenuItem {
        label: "Quit"
        onTriggered: root.frame.quitRequested()
    }
}
