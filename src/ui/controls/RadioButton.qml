import QtQuick
import Velloran

/// A choice with a round mark. The whole row is its target.
ChoiceButton {
    id: root

    /// The neighbours in the group, which the arrow keys go to. Only the selected one of a group can be reached by Tab.
    property ChoiceButton previous: null
    property ChoiceButton next: null

    function moveTo(other: ChoiceButton) {
        if (other) {
            other.forceActiveFocus(Qt.TabFocusReason);
            other.activate();
        }
    }

    activeFocusOnTab: root.isSelected || (!root.previous && !root.next)
    Keys.onUpPressed: root.moveTo(root.previous)
    Keys.onLeftPressed: root.moveTo(root.previous)
    Keys.onDownPressed: root.moveTo(root.next)
    Keys.onRightPressed: root.moveTo(root.next)

    contentItem: ChoiceRow {
        label: root.label
        isFocused: root.visualFocus
        isHovered: root.hovered
        isPressed: root.down
        markRadius: 9

        RoundedFace {
            anchors.fill: parent
            radius: 9
            fill: Theme.fieldFill
            stroke: root.isSelected ? Theme.accentBlue : Theme.fieldStroke
            strokeWidth: root.isSelected ? 5 : 1.5
        }
    }
}
