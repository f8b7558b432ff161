import QtQuick
import QtQuick.Layouts
import Velloran

/// How a run is started, and what has to be so for a click to happen.
CardBackground {
    id: root

    required property ConfigModel config
    /// What does not work on this desktop.
    property desktopLimits limits

    readonly property int labelWidth: 170
    /// Under a checkbox, things start where its label does.
    readonly property int checkboxIndent: 28 + 10

    contentItem: ColumnLayout {
        spacing: Theme.spacing.md

        SectionHeader {
            Layout.fillWidth: true
            icon: "keyboard.fill"
            title: "Start / Stop Options"
            iconColor: Theme.statusRunning
        }

        ColumnLayout {
            spacing: 6

            RowLayout {
                spacing: Theme.spacing.md

                FieldLabel {
                    id: hotkeyLabel

                    columnWidth: root.labelWidth
                    text: "Start / Stop Hotkey"
                }

                HotkeyRecorder {
                    Layout.fillWidth: true
                    label: "Start / Stop Hotkey"
                    help: root.limits.hotkey
                    hasCombo: root.config.hasHotkey
                    display: root.config.hotkeyDisplay
                    onRecorded: combo => root.config.setHotkey(combo)
                    onCleared: root.config.clearHotkey()
                }

                HotkeyChoiceMenu {
                    choices: root.config.hotkeyChoices
                    onChosen: index => root.config.chooseHotkey(index)
                    onCleared: root.config.clearHotkey()
                }
            }

            HelperText {
                indent: hotkeyLabel.width + Theme.spacing.md
                text: root.config.hasHotkey ? "Press your hotkey anywhere to start/stop" : "Press keys to record shortcut"
            }
        }

        Divider {
            Layout.fillWidth: true
        }

        ColumnLayout {
            spacing: 8

            Checkbox {
                Layout.fillWidth: true
                label: "Start clicking after"
                isOn: root.config.hasStartDelay
                onToggled: on => root.config.hasStartDelay = on
            }

            DurationRow {
                label: "Start clicking after"
                indent: root.checkboxIndent
                value: root.config.startDelaySeconds
                from: root.config.delayMin
                to: root.config.delayMax
                step: 1
                decimals: 0
                disabled: root.config.startDelaySeconds === 0
                onValueEdited: newValue => root.config.startDelaySeconds = newValue
            }

            HelperText {
                indent: root.checkboxIndent
                text: "Wait before auto clicking starts"
            }
        }

        ColumnLayout {
            spacing: 8

            Checkbox {
                Layout.fillWidth: true
                label: "Click only if mouse is stationary"
                help: root.limits.stillMouse
                isOn: root.config.requireStationaryMouse
                onToggled: on => root.config.requireStationaryMouse = on
            }

            DurationRow {
                label: "Click only if mouse is stationary"
                leading: "for at least"
                indent: root.checkboxIndent
                value: root.config.stationarySeconds
                from: root.config.stationaryMin
                to: root.config.stationaryMax
                step: 0.1
                decimals: 1
                disabled: !root.config.requireStationaryMouse
                onValueEdited: newValue => root.config.stationarySeconds = newValue
            }

            HelperText {
                indent: root.checkboxIndent
                text: "Only click when the cursor has not moved for the chosen duration"
            }
        }
    }
}
