import QtQuick
import QtQuick.Layouts
import Velloran

/// When a run ends and, while a counted one is under way, how far it has come.
CardBackground {
    id: root

    required property ConfigModel config
    required property RunModel run

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
            leftSelected: root.config.isManual
            onToggled: left => root.config.isManual = left
        }

        ColumnLayout {
            spacing: 14

            RadioButton {
                id: untilStopped

                Layout.fillWidth: true
                label: "Run until manually stopped"
                isSelected: root.config.isManual
                next: afterCount
                onTriggered: root.config.isManual = true
            }

            RowLayout {
                spacing: 10

                RadioButton {
                    id: afterCount

                    Layout.preferredWidth: Math.max(120, implicitWidth)
                    label: "Stop after"
                    isSelected: !root.config.isManual
                    previous: untilStopped
                    onTriggered: root.config.isManual = false
                }

                NumberField {
                    id: count

                    Layout.preferredWidth: Math.max(160, count.minimumWidth)
                    label: "Stop after"
                    disabled: root.config.isManual

                    model: CountFieldModel {
                        value: root.config.clickCount
                        from: root.config.clicksMin
                        to: root.config.clicksMax
                        step: 10
                        onStored: number => root.config.clickCount = number
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
            text: root.config.isManual ? "Clicking continues until you press Stop or the hotkey."
                                      : "Total number of clicks before automatically stopping."
        }

        OnDemand {
            wanted: root.run.showsProgress

            ColumnLayout {
                visible: root.run.showsProgress
                spacing: Theme.spacing.md

                ProgressBar {
                    Layout.fillWidth: true
                    label: "Progress"
                    progress: root.run.progress
                }

                BodyText {
                    Layout.fillWidth: true
                    text: root.run.progressText
                    size: 12
                    weight: Font.Medium
                    color: Theme.textSecondary
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
