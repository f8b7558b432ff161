import QtQuick
import QtQuick.Layouts
import Velloran

/// The presets menu, and the ways to bring the settings in, take them out and start afresh.
Item {
    id: root

    required property PresetsModel presets
    required property ConfigFiles files

    readonly property int padding: 10
    property PresetsMenu openMenu: null

    function togglePresetsMenu(byKey: bool) {
        if (!root.openMenu?.opened)
            root.openMenu = presetsMenu.createObject(presetsButton, { ownPresets: root.presets.own() }) as PresetsMenu;
        root.openMenu.toggle(byKey);
    }

    implicitWidth: row.implicitWidth + 2 * root.padding
    implicitHeight: row.implicitHeight + 2 * root.padding

    RoundedFace {
        anchors.fill: parent
        radius: 14
        fill: Theme.faded(Theme.cardFill, 0.6)
        stroke: Theme.cardStroke
    }

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.margins: root.padding
        spacing: Theme.spacing.sm

        PlainButton {
            id: presetsButton

            label: "Presets"
            size: 13.5
            color: Theme.textPrimary
            onTriggered: root.togglePresetsMenu(!presetsButton.isPointerPress)
            Keys.onDownPressed: root.togglePresetsMenu(true)
            Accessible.role: Accessible.ButtonMenu
            leftPadding: 6
            rightPadding: 6

            contentItem: Row {
                spacing: 6

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "line.3.horizontal"
                    pointSize: 14
                    color: presetsButton.color
                }

                BodyText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: presetsButton.label
                    size: presetsButton.size
                    weight: presetsButton.weight
                    color: presetsButton.color
                    exposed: false
                }

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "chevron.down"
                    pointSize: 10
                    color: presetsButton.color
                }
            }
        }

        Item {
            Layout.fillWidth: true
        }

        FooterButton {
            label: "Import"
            systemImage: "square.and.arrow.down"
            onTriggered: root.files.importConfig(root.Window.window)
        }

        FooterButton {
            label: "Export"
            systemImage: "square.and.arrow.up"
            onTriggered: root.files.exportConfig(root.Window.window)
        }

        FooterButton {
            label: "Reset"
            systemImage: "arrow.counterclockwise"
            onTriggered: root.presets.resetToDefaults()
        }
    }

    Component {
        id: presetsMenu

        PresetsMenu {
            id: menu

            presets: root.presets
            onSaveRequested: naming.begin()
            onClosed: {
                if (root.openMenu === menu)
                    root.openMenu = null;
                menu.destroy();
            }
        }
    }

    SavePresetModel {
        id: naming

        onConfirmed: presetName => root.presets.saveCurrent(presetName)
    }

    Sheet {
        shown: naming.isShown
        title: "Save preset"
        onClosedByUser: naming.putAway()

        SavePresetSheet {
            focus: true
            name: naming.name
            onNameEdited: newName => naming.name = newName
            onConfirm: naming.confirm()
            onCancel: naming.cancel()
        }
    }

    // While a file dialog is open, the window below it can be seen only.
    Sheet {
        shown: root.files.isAsking

        Item {}
    }
}
