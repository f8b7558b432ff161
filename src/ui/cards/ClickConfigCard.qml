import QtQuick
import QtQuick.Layouts
import Velloran

/// How often, and with which button, the program clicks.
CardBackground {
    id: root

    required property StoreModel store

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
                names: root.store.mouseButtonNames
                selection: root.store.mouseButton
                onSelected: index => root.store.mouseButton = index
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
                    value: root.store.clickIntervalSeconds
                    from: root.store.intervalMin
                    to: root.store.intervalMax
                    step: 0.05
                    decimals: 2
                    onStored: seconds => root.store.clickIntervalSeconds = seconds
                }
            }
        }

        HelperText {
            indent: intervalLabel.width + Theme.spacing.md
            text: "Time between each click"
        }
    }
}
