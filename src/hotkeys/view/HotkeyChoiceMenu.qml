import QtQuick

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
    onTriggered: menu.toggle(!root.isPointerPress)
    Keys.onDownPressed: menu.toggle(true)
    Keys.onUpPressed: menu.toggle(true)

    Accessible.role: Accessible.ButtonMenu
    Accessible.description: ""

    contentItem: Icon {
        name: "chevron.down.circle.fill"
        pointSize: 18
        color: Theme.faded(Theme.accentBlue, 0.85)
    }

    PopupMenu {
        id: menu

        endsRight: true

        Repeater {
            model: root.choices

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
