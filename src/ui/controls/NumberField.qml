import QtQuick
import Velloran

/// An input for a number, with an optional unit and steppers. Every number that it stores is told by `valueEdited`, equal ones
/// included; its owner answers through `value`.
FocusScope {
    id: root

    /// What the field is called: the label of its row.
    required property string label
    required property real value
    required property real from
    required property real to
    /// What the steppers add and take away; 0 for no steppers.
    property real step: 0
    property bool integer: false
    /// Digits shown behind the full stop; -1 for as many as the number has.
    property int decimals: -1
    property string suffix: ""
    property string placeholder: ""
    property bool disabled: false

    signal valueEdited(real newValue)

    readonly property int margin: 12
    readonly property int spacing: 8

    /// The least width at which nothing of what the field shows at the moment is cut.
    readonly property real minimumWidth: Math.ceil(2 * root.margin + Math.min(input.contentWidth + 2, Theme.scaled(90))
            + (unit.visible ? root.spacing + unit.width : 0) + note.width
            + (steppers.visible ? root.spacing + steppers.width : 0))

    // How far the field looks like one with a change to be stored, 0…1.
    property real pendingness: model.hasPendingChange ? 1 : 0

    Behavior on pendingness {
        EaseInOut { seconds: 0.18 }
    }

    implicitWidth: Math.max(110, root.minimumWidth)
    implicitHeight: 18 + Math.max(input.implicitHeight, unit.implicitHeight, note.implicitHeight,
            steppers.visible ? steppers.implicitHeight : 0)
    opacity: root.disabled ? 0.55 : 1

    NumberFieldModel {
        id: model

        value: root.value
        from: root.from
        to: root.to
        step: root.step
        integer: root.integer
        decimals: root.decimals
        onStored: number => root.valueEdited(number)
    }

    RoundedFace {
        anchors.fill: parent
        radius: Theme.radius.field
        fill: Theme.fieldFill
        stroke: Theme.mixed(input.activeFocus ? Theme.fieldStrokeFocus : Theme.fieldStroke,
                Theme.faded(Theme.accentBlue, 0.6), root.pendingness)
    }

    FocusRing {
        shown: input.hasKeyboardFocus
        around: Theme.radius.field
    }

    TapHandler {
        enabled: !root.disabled
        gesturePolicy: TapHandler.DragThreshold
        onTapped: input.forceActiveFocus(Qt.MouseFocusReason)
    }

    NumberInput {
        id: input

        anchors {
            left: parent.left
            leftMargin: root.margin
            right: unit.left
            rightMargin: unit.visible ? root.spacing : 0
            verticalCenter: parent.verticalCenter
        }
        focus: true
        enabled: !root.disabled
        text: model.text
        placeholder: root.placeholder
        label: root.label
        frame: root
        onTextEdited: model.text = input.text
        onActiveFocusChanged: input.activeFocus ? model.beginEditing() : model.endEditing()
        onAccepted: model.commit()
        onSteppedUp: model.stepUp()
        onSteppedDown: model.stepDown()
    }

    BodyText {
        id: unit

        anchors.right: note.left
        anchors.verticalCenter: parent.verticalCenter
        width: unit.visible ? unit.implicitWidth : 0
        visible: root.suffix !== ""
        text: root.suffix
        size: 13
        weight: Font.Medium
        color: Theme.textMuted
    }

    CommitNote {
        id: note

        anchors {
            right: steppers.left
            rightMargin: steppers.visible ? root.spacing : 0
            verticalCenter: parent.verticalCenter
        }
        gap: root.spacing
        pending: model.hasPendingChange
        updated: model.justUpdated
        onUpdatePressed: model.commit()
    }

    Column {
        id: steppers

        anchors {
            right: parent.right
            rightMargin: root.margin
            verticalCenter: parent.verticalCenter
        }
        width: steppers.visible ? steppers.implicitWidth : 0
        visible: root.step !== 0
        enabled: !root.disabled
        opacity: root.disabled ? 0.4 : 1
        spacing: 2

        StepperButton {
            label: "Increase " + root.label
            systemName: "chevron.up"
            onTriggered: model.stepUp()
        }

        StepperButton {
            label: "Decrease " + root.label
            systemName: "chevron.down"
            onTriggered: model.stepDown()
        }
    }
}
