import QtQuick
import QtQuick.Layouts
import Velloran

/// How a run is started, and what has to be so for a click to happen.
CardBackground {
    id: root

    required property StoreModel store
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
                    hasCombo: root.store.hasHotkey
                    display: root.store.hotkeyDisplay
                    onRecorded: combo => root.store.hotkey = combo
                    onCleared: root.store.clearHotkey()
                }

                HotkeyChoiceMenu {
                    choices: root.store.hotkeyChoices
                    onChosen: index => root.store.chooseHotkey(index)
                    onCleared: root.store.clearHotkey()
                }
            }

            HelperText {
                indent: hotkeyLabel.width + Theme.spacing.md
                text: root.store.hasHotkey ? "Press your hotkey anywhere to start/stop" : "Press keys to record shortcut"
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
                isOn: root.store.hasStartDelay
                onToggled: on => root.store.hasStartDelay = on
            }

            DurationRow {
                label: "Start clicking after"
                indent: root.checkboxIndent
                value: root.store.startDelaySeconds
                from: root.store.delayMin
                to: root.store.delayMax
                step: 1
                decimals: 0
                disabled: root.store.startDelaySeconds === 0
                onValueEdited: newValue => root.store.startDelaySeconds = newValue
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
                isOn: root.store.requireStationaryMouse
                onToggled: on => root.store.requireStationaryMouse = on
            }

            DurationRow {
                label: "Click only if mouse is stationary"
                leading: "for at least"
                indent: root.checkboxIndent
                value: root.store.stationarySeconds
                from: root.store.stationaryMin
                to: root.store.stationaryMax
                step: 0.1
                decimals: 1
                disabled: !root.store.requireStationaryMouse
                onValueEdited: newValue => root.store.stationarySeconds = newValue
            }

            HelperText {
                indent: root.checkboxIndent
                text: "Only click when the cursor has not moved for the chosen duration"
            }
        }
    }
}
