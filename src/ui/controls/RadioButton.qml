import QtQuick

/// One choice of a group. It reports every press, also while it is selected; whoever placed it decides what is.
PlainButton {
    id: root

    required property bool isSelected
    /// The neighbours in the group, which the arrow keys go to. Only the selected one of a group can be reached by Tab.
    property PlainButton previous: null
    property PlainButton next: null

    function moveTo(other: PlainButton) {
        if (other) {
            other.forceActiveFocus(Qt.TabFocusReason);
            other.activate();
        }
    }

    faceRadius: 9
    activeFocusOnTab: root.isSelected || (!root.previous && !root.next)
    Keys.onUpPressed: root.moveTo(root.previous)
    Keys.onLeftPressed: root.moveTo(root.previous)
    Keys.onDownPressed: root.moveTo(root.next)
    Keys.onRightPressed: root.moveTo(root.next)

    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: root.isSelected
    Accessible.onToggleAction: root.activate()

    contentItem: ChoiceRow {
        label: root.label

        RoundedFace {
            anchors.fill: parent
            radius: 9
            fill: Theme.fieldFill
            stroke: root.isSelected ? Theme.accentBlue : Theme.fieldStroke
            strokeWidth: root.isSelected ? 5 : 1.5
        }
    }
}
