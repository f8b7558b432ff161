import QtQuick

/// The ready-made shortcuts, and the way to have none.
PopupMenu {
    id: root

    /// What it belongs to.
    required property HotkeyChoiceMenu opener

    endsRight: true

    Repeater {
        model: root.opener.choices

        PopupMenuItem {
            required property int index
            required property string modelData

            label: modelData
            onTriggered: root.opener.chosen(index)
        }
    }

    MenuDivider {}

    PopupMenuItem {
        label: "Clear Hotkey"
        onTriggered: root.opener.cleared()
    }
}
