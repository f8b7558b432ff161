import QtQuick
import QtQml.Models

/// The ready-made shortcuts, behind a small round button.
PlainButton {
    id: root

    required property list<string> choices

    signal chosen(int index)
    signal cleared()

    label: "Choose a preset hotkey"
    help: "Choose a preset hotkey"
    faceRadius: root.width / 2
    air: 0
    onTriggered: menu.visible ? menu.close() : menu.open()

    Accessible.role: Accessible.ButtonMenu
    Accessible.description: ""

    contentItem: Icon {
        name: "chevron.down.circle.fill"
        pointSize: 18
        color: Theme.faded(Theme.accentBlue, 0.85)
    }

    PopupMenu {
        id: menu

        y: root.height + 4
        x: root.width - menu.width
        closePolicy: PopupMenu.CloseOnEscape | PopupMenu.CloseOnPressOutsideParent

        Instantiator {
            model: root.choices
            onObjectAdded: (index, item) => menu.insertItem(index, item)
            onObjectRemoved: (index, item) => menu.removeItem(item)

            PopupMenuItem {
                required property int index
                required property string modelData

                label: modelData
                onTriggered: root.chosen(index)
            }
        }

        MenuDivider {}

        PopupMenuItem {
            label: "Clear Hotkey"
            onTriggered: root.cleared()
        }
    }
}
