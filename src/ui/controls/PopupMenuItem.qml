import QtQuick
import QtQuick.Templates as T
import Velloran

/// An entry of a pull-down menu. Its name is shown letter for letter, and cut in its middle where it is too long for any menu.
T.MenuItem {
    id: root

    required property string label
    /// The name of an icon, or nothing.
    property string systemImage: ""
    /// Whether choosing it takes something away.
    property bool destructive: false

    /// The first letter or digit of the name, as a small one: what is typed to select the entry. Empty if there is none.
    readonly property string letter: {
        for (const character of root.label.toLowerCase()) {
            if (character !== character.toUpperCase() || (character >= "0" && character <= "9"))
                return character;
        }
        return "";
    }

    implicitWidth: root.implicitContentWidth + root.leftPadding + root.rightPadding
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding
    width: root.ListView.view ? root.ListView.view.width : root.implicitWidth
    leftPadding: 10
    rightPadding: 10
    topPadding: 6
    bottomPadding: 6
    hoverEnabled: (root.menu as PopupMenu)?.heedsPointer ?? true

    Accessible.name: root.label
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }

    contentItem: MenuItemRow {
        opacity: root.enabled ? 1 : 0.45
        label: root.label
        systemImage: root.systemImage
        destructive: root.destructive
        leadsOn: root.subMenu !== null
    }

    background: RoundedFace {
        radius: 6
        fill: root.highlighted ? Theme.accentBlueSoft : "transparent"
        // Outlines stand out where faint fills may not.
        stroke: root.highlighted && Theme.highContrast ? Theme.accentBlue : "transparent"

        // Under the pointer it is highlighted, as by a key.
        PointerVeil {
            radius: 6
            hovered: false
            pressed: root.down
        }
    }
}
