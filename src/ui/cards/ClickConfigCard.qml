import QtQuick
import QtQuick.Layouts
import Velloran

/// How often, and with which button, the program clicks.
CardBackground {
    id: root

    required property ConfigModel config

    readonly property int labelWidth: 130

    contentItem: ColumnLayout {
        spacing: Theme.spacing.md

        SectionHeader {
            Layout.fillWidth: true
            icon: "computermouse.fill"
            title: "Click Configuration"
        }

        RowLayout {
            spacing: Theme.spacing.md

            FieldLabel {
                columnWidth: root.labelWidth
                text: "Mouse Button"
            }

            MouseButtonSelect {
                Layout.fillWidth: true
                label: "Mouse Button"
                names: root.config.mouseButtonNames
                selection: root.config.mouseButton
                onSelected: index => root.config.mouseButton = index
            }
        }

        Divider {
            Layout.fillWidth: true
        }

        RowLayout {
            spacing: Theme.spacing.md

            FieldLabel {
                id: intervalLabel

                columnWidth: root.labelWidth
                text: "Click Interval"
            }

            NumberField {
                Layout.fillWidth: true
                label: "Click Interval"
                suffix: "seconds"

                model: RealFieldModel {
                    value: root.config.clickIntervalSeconds
                    from: root.config.intervalMin
                    to: root.config.intervalMax
                    step: 0.05
                    decimals: 2
                    onStored: seconds => root.config.clickIntervalSeconds = seconds
                }
            }
        }

        HelperText {
            indent: intervalLabel.width + Theme.spacing.md
            text: "Time between each click"
        }
    }
}
