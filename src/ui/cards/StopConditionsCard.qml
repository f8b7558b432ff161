import QtQuick
import QtQuick.Layouts
import Velloran

/// When a run ends and, while a counted one is under way, how far it has come.
CardBackground {
    id: root

    required property StoreModel store

    contentItem: ColumnLayout {
        spacing: Theme.spacing.md

        SectionHeader {
            Layout.fillWidth: true
            icon: "stop.circle.fill"
            title: "Stop Conditions"
            iconColor: Theme.accentBlue
        }

        SegmentedToggle {
            Layout.fillWidth: true
            leftLabel: "Run Until Stopped"
            rightLabel: "Stop After"
            leftSelected: root.store.isManual
            onToggled: left => root.store.isManual = left
        }

        ColumnLayout {
            spacing: 14

            RadioButton {
                id: untilStopped

                Layout.fillWidth: true
                label: "Run until manually stopped"
                isSelected: root.store.isManual
                next: afterCount
                onTriggered: root.store.isManual = true
            }

            RowLayout {
                spacing: 10

                RadioButton {
                    id: afterCount

                    Layout.preferredWidth: Math.max(120, implicitWidth)
                    label: "Stop after"
                    isSelected: !root.store.isManual
                    previous: untilStopped
                    onTriggered: root.store.isManual = false
                }

                NumberField {
                    id: count

                    Layout.preferredWidth: Math.max(160, count.minimumWidth)
                    label: "Stop after"
                    disabled: root.store.isManual

                    model: CountFieldModel {
                        value: root.store.clickCount
                        from: root.store.clicksMin
                        to: root.store.clicksMax
                        step: 10
                        onStored: number => root.store.clickCount = number
                    }
                }

                BodyText {
                    Layout.fillWidth: true
                    text: "clicks"
                    size: 13
                    weight: Font.Medium
                    color: Theme.textSecondary
                }
            }
        }

        HelperText {
            text: root.store.isManual ? "Clicking continues until you press Stop or the hotkey."
                                      : "Total number of clicks before automatically stopping."
        }

        ColumnLayout {
            visible: root.store.showsProgress
            spacing: Theme.spacing.md

            ProgressBar {
                Layout.fillWidth: true
                label: "Progress"
                progress: root.store.progress
            }

            BodyText {
                Layout.fillWidth: true
                text: root.store.progressText
                size: 12
                weight: Font.Medium
                color: Theme.textSecondary
                wrapMode: Text.Wrap
            }
        }
    }
}
