import QtQuick
import QtQuick.Templates as T
import Velloran

/// A tick box with its label. The whole row is its target. It shows what it is told; a press only asks for the opposite.
FocusScope {
    id: root

    required property bool isOn
    required property string label
    /// Shown while the pointer rests on it.
    property string help: ""

    /// Somebody wants it the other way round.
    signal toggled(bool on)

    function pressKey(isRepeated: bool) {
        if (!isRepeated)
            box.clicked();
    }

    implicitWidth: box.implicitWidth
    implicitHeight: box.implicitHeight

    // Not the toolkit's own: one that is made while an assistive tool listens loses a kilobyte, as it tells of itself before its
    // place for that is made.
    T.AbstractButton {
        id: box

        anchors.fill: parent
        focus: true
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        implicitWidth: box.implicitContentWidth
        implicitHeight: box.implicitContentHeight
        checkable: true
        checked: root.isOn
        onClicked: {
            root.toggled(!root.isOn);
            // A press has ticked it, whatever has come of that.
            box.checked = Qt.binding(() => root.isOn);
        }
        Keys.onReturnPressed: event => root.pressKey(event.isAutoRepeat)
        Keys.onEnterPressed: event => root.pressKey(event.isAutoRepeat)

        Accessible.role: Accessible.CheckBox
        Accessible.name: root.label
        Accessible.description: root.help
        Accessible.focusable: true
        Accessible.onPressAction: box.clicked()
        Accessible.onToggleAction: box.clicked()

        contentItem: ChoiceRow {
            label: root.label
            isFocused: box.visualFocus
            isHovered: box.hovered
            isPressed: box.down
            opacity: box.down ? Theme.pressedOpacity : 1

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

    OnDemand {
        wanted: root.help !== "" && box.hovered

        HelpTip {
            help: root.help
            shown: box.hovered && !box.down
        }
    }
}
