import QtQuick

/// A choice between two, side by side. Pressing the chosen one reports it again.
FocusScope {
    id: root

    required property string leftLabel
    required property string rightLabel
    required property bool leftSelected

    signal toggled(bool left)

    function choose(isLeft: bool) {
        (isLeft ? left : right).forceActiveFocus(Qt.TabFocusReason);
        root.toggled(isLeft);
    }

    implicitWidth: left.implicitWidth + right.implicitWidth
    implicitHeight: Math.max(left.implicitHeight, right.implicitHeight)

    Segment {
        id: left

        z: left.visualFocus ? 1 : 0
        width: root.width / 2
        height: root.height
        focus: root.leftSelected
        activeFocusOnTab: root.leftSelected
        label: root.leftLabel
        isSelected: root.leftSelected
        onTriggered: root.toggled(true)
        Keys.onRightPressed: root.choose(false)
        Keys.onDownPressed: root.choose(false)
    }

    Segment {
        id: right

        x: root.width / 2
        width: root.width / 2
        height: root.height
        focus: !root.leftSelected
        activeFocusOnTab: !root.leftSelected
        label: root.rightLabel
        isSelected: !root.leftSelected
        onTriggered: root.toggled(false)
        Keys.onLeftPressed: root.choose(true)
        Keys.onUpPressed: root.choose(true)
    }
}
