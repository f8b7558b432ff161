import QtQuick
import QtQuick.Layouts
import Velloran

/// Sets a shortcut by having it pressed.
FocusScope {
    id: root

    /// Whether there is a shortcut.
    required property bool hasCombo
    /// The text that shows it.
    required property string display
    /// What the control is called: the label of its row.
    property string label: ""
    /// Shown while the pointer rests on it.
    property string help: ""

    /// Another shortcut was pressed. `combo` is what `ConfigModel.setHotkey` takes.
    signal recorded(var combo)
    /// The shortcut is to go.
    signal cleared

    readonly property bool isRecording: recording.isRecording

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    HotkeyRecorderModel {
        id: recording

        onRecorded: combo => root.recorded(combo)
    }

    // An item of a window that is closed, or of a page that is put away, is not visible any more.
    onVisibleChanged: {
        if (!visible)
            recording.stopMonitor();
    }

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: 8

        PlainButton {
            id: button

            Layout.fillWidth: true
            focus: true
            help: root.help
            label: root.isRecording ? "Press keys to record…" : root.hasCombo ? root.display : "Click to record shortcut"
            leftPadding: 12
            // The text ends a gap and the least spacer before the padding.
            rightPadding: 12 + 8 + 4
            topPadding: 9
            bottomPadding: 9
            faceRadius: Theme.radius.field
            size: 14
            weight: !root.isRecording && root.hasCombo ? Font.DemiBold : Font.Medium
            color: !root.isRecording && root.hasCombo ? Theme.textPrimary : Theme.textMuted
            onTriggered: {
                // Text under way elsewhere is finished first: no letter of the shortcut may get into it.
                button.forceActiveFocus(button.focusReason);
                recording.toggleRecording();
            }

            Accessible.description: root.help === "" ? root.label : root.label + ". " + root.help

            background: RoundedFace {
                radius: Theme.radius.field
                fill: Theme.fieldFill
                stroke: root.isRecording ? Theme.fieldStrokeFocus : Theme.fieldStroke
            }

            contentItem: BodyText {
                text: button.label
                size: button.size
                weight: button.weight
                color: button.color
                elide: Text.ElideRight
                exposed: false
            }
        }

        PlainButton {
            visible: root.hasCombo
            label: "Clear hotkey"
            help: "Clear hotkey"
            faceRadius: 8
            air: 0
            onTriggered: root.cleared()

            contentItem: Icon {
                name: "xmark.circle.fill"
                pointSize: 16
                color: Theme.textMuted
            }
        }
    }
}
