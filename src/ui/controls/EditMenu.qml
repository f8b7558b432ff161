import QtQuick

/// What can be done with the text of a field by its selection and the clipboard. Made for one showing; nothing that it holds can
/// act at another moment than now.
PopupMenu {
    id: root

    required property TextInput field

    PopupMenuItem {
        label: "Cut"
        enabled: root.field.selectedText !== ""
        onTriggered: root.field.cut()
    }

    PopupMenuItem {
        label: "Copy"
        enabled: root.field.selectedText !== ""
        onTriggered: root.field.copy()
    }

    PopupMenuItem {
        label: "Paste"
        enabled: root.field.canPaste
        onTriggered: root.field.paste()
    }

    MenuDivider {}

    PopupMenuItem {
        label: "Select All"
        enabled: root.field.selectedText !== root.field.text
        onTriggered: root.field.selectAll()
    }
}
