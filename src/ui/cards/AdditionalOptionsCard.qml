import QtQuick
import QtQuick.Layouts
import Velloran

/// Two options that the main window has no place for.
CardBackground {
    id: root

    required property ConfigModel config

    contentItem: ColumnLayout {
        spacing: Theme.spacing.md

        SectionHeader {
            Layout.fillWidth: true
            icon: "gearshape.fill"
            title: "Additional Options"
            iconColor: Theme.optionsViolet
        }

        Checkbox {
            Layout.fillWidth: true
            label: "Play click sound"
            isOn: root.config.playClickSound
            onToggled: on => root.config.playClickSound = on
        }

        Checkbox {
            Layout.fillWidth: true
            label: "Minimize to menu bar"
            isOn: root.config.minimizeToTray
            onToggled: on => root.config.minimizeToTray = on
        }
    }
}
