import QtQuick

/// What can be done with the text of a field by its selection and the clipboard. Made for one showing; nothing that it holds can
/// act at another moment than now.
PopupMenu {
    id: root

    required property TextBox field

    // By now the focus is back, so that at no moment the field seems to be left.
    onClosed: {
        // Unless a newer one is open.
        if (root.field.openedMenu === root)
            root.field.openedMenu = null;
        root.destroy();
    }

    PopupMenuItem {
        label: "Cut"
        enabled: root.field.selectedText !== ""
        onTriggered: root.field.cut()
    }

    PopupMenuItem {
        label: "Copy"
        enabled: root.field.selectedText !== ""
        onTriggered: root.field.copySelection()
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
