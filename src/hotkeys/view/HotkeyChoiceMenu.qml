import QtQuick
import Velloran

/// The ready-made shortcuts, behind a small round button.
PlainButton {
    id: root

    required property list<string> choices

    signal chosen(int index)
    signal cleared()

    function toggleMenu(byKey: bool) {
        menu.get({ opener: root }).toggle(byKey);
    }

    label: "Choose a preset hotkey"
    help: "Choose a preset hotkey"
    faceRadius: root.width / 2
    air: 0
    onTriggered: root.toggleMenu(!root.isPointerPress)
    Keys.onDownPressed: root.toggleMenu(true)
    Keys.onUpPressed: root.toggleMenu(true)

    Accessible.role: Accessible.ButtonMenu
    Accessible.description: ""

    contentItem: Icon {
        name: "chevron.down.circle.fill"
        pointSize: 18
        color: Theme.faded(Theme.accentBlue, 0.85)
    }

    OnDemand {
        id: menu

        source: "HotkeyMenu.qml"
    }
}
