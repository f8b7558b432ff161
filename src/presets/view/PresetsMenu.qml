import QtQuick
import Velloran

/// The presets to apply and to delete, and the way to a new one. Made for one showing.
PopupMenu {
    id: root

    required property PresetsModel presets
    /// The presets as they are now. Not bound to them: an entry that is chosen must not vanish before the menu has closed.
    required property var ownPresets

    /// The user wants to keep the current settings as a preset.
    signal saveRequested

    Component.onCompleted: {
        // Above the last divider and the entry that follows it.
        if (root.ownPresets.length > 0)
            root.insertMenu(root.count - 2, deleteMenu.createObject(root) as PopupMenu);
    }

    MenuSection {
        title: "Built-in"
    }

    Repeater {
        model: root.presets.builtIns

        PopupMenuItem {
            required property var modelData

            label: modelData.name
            onTriggered: root.presets.apply(modelData.id)
        }
    }

    Repeater {
        model: root.ownPresets.length > 0 ? 1 : 0

        MenuSection {
            title: "My Presets"
        }
    }

    Repeater {
        model: root.ownPresets

        PopupMenuItem {
            required property var modelData

            label: modelData.name
            onTriggered: root.presets.apply(modelData.id)
        }
    }

    Repeater {
        model: root.ownPresets.length > 0 ? 1 : 0

        MenuDivider {}
    }

    MenuDivider {}

    PopupMenuItem {
        label: "Save current as preset…"
        onTriggered: root.saveRequested()
    }

    Component {
        id: deleteMenu

        PopupMenu {
            title: "Delete Preset"

            Repeater {
                model: root.ownPresets

                PopupMenuItem {
                    required property var modelData

                    label: "Delete \"" + modelData.name + "\""
                    destructive: true
                    onTriggered: root.presets.remove(modelData.id)
                }
            }
        }
    }
}
