import QtQuick
import QtQuick.Layouts
import Velloran

/// What the main window has no place for: the additional options and the bar with the presets.
Item {
    id: root

    required property ConfigModel config
    required property PresetsModel presets
    required property ConfigFiles files

    signal done

    readonly property int padding: 24

    implicitWidth: Math.max(520, column.implicitWidth) + 2 * root.padding
    implicitHeight: column.implicitHeight + 2 * root.padding

    ColumnLayout {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.spacing.md

        AdditionalOptionsCard {
            Layout.fillWidth: true
            config: root.config
        }

        FooterBar {
            Layout.fillWidth: true
            presets: root.presets
            files: root.files
        }

        FaceButton {
            Layout.alignment: Qt.AlignRight
            label: "Done"
            onTriggered: root.done()
        }
    }
}
