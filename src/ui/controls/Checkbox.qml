import QtQuick

/// A tick box with its label. The whole row is its target.
FocusScope {
    id: root

    required property bool isOn
    required property string label

    /// Somebody wants it the other way round.
    signal toggled(bool on)

    implicitWidth: button.implicitWidth
    implicitHeight: button.implicitHeight

    PlainButton {
        id: button

        anchors.fill: parent
        focus: true
        label: root.label
        faceRadius: 5
        onTriggered: root.toggled(!root.isOn)

        Accessible.role: Accessible.CheckBox
        Accessible.checkable: true
        Accessible.checked: root.isOn
        Accessible.onToggleAction: button.activate()

        contentItem: ChoiceRow {
            label: root.label

            RoundedFace {
                anchors.fill: parent
                radius: 5
                fill: root.isOn ? Theme.accentBlue : Theme.fieldFill
                stroke: Theme.fieldStroke

                Behavior on fill {
                    ColorEase { seconds: 0.12 }
                }
            }

            Icon {
                anchors.centerIn: parent
                name: "checkmark"
                pointSize: 10
                color: Theme.textPrimary
                opacity: root.isOn ? 1 : 0

                Behavior on opacity {
                    EaseInOut { seconds: 0.12 }
                }
            }
        }
    }
}
