import QtQuick
import Velloran

/// An input for a number, with an optional unit and steppers.
FocusScope {
    id: root

    /// What the field is called: the label of its row.
    required property string label
    /// What is edited, within which bounds: a field of whole or of real numbers, for this one view.
    required property NumberFieldModel model
    property string suffix: ""
    property string placeholder: ""
    property bool disabled: false

    readonly property int margin: 12
    readonly property int spacing: 8

    /// The least width at which nothing of what the field shows at the moment is cut.
    readonly property real minimumWidth: Math.ceil(2 * root.margin + Math.min(input.contentWidth + 2, Theme.scaled(90))
            + (unit.visible ? root.spacing + unit.width : 0) + note.width
            + (steppers.visible ? root.spacing + steppers.width : 0))

    // How far the field looks like one with a change to be stored, 0…1.
    property real pendingness: root.model.hasPendingChange ? 1 : 0

    Behavior on pendingness {
        EaseInOut { seconds: 0.18 }
    }

    implicitWidth: Math.max(110, root.minimumWidth)
    implicitHeight: 18 + Math.max(input.implicitHeight, unit.implicitHeight, note.implicitHeight,
            steppers.visible ? steppers.implicitHeight : 0)
    opacity: root.disabled ? 0.55 : 1

    RoundedFace {
        anchors.fill: parent
        radius: Theme.radius.field
        fill: Theme.fieldFill
        stroke: Theme.mixed(input.isEdited ? Theme.fieldStrokeFocus : Theme.fieldStroke,
                Theme.faded(Theme.accentBlue, 0.6), root.pendingness)
    }

    OnDemand {
        wanted: input.visualFocus

        FocusRing {
            shown: input.visualFocus
            around: Theme.radius.field
        }
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
        text: root.model.text
        placeholder: root.placeholder
        reach: 9
        label: root.label
        frame: root
        onTextEdited: root.model.text = input.text
        onIsEditedChanged: input.isEdited ? root.model.beginEditing() : root.model.endEditing()
        onAccepted: root.model.commit()
        onSteppedUp: root.model.stepUp()
        onSteppedDown: root.model.stepDown()
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
        pending: root.model.hasPendingChange
        updated: root.model.justUpdated
        onUpdatePressed: root.model.commit()
    }

    Column {
        id: steppers

        anchors {
            right: parent.right
            rightMargin: root.margin
            verticalCenter: parent.verticalCenter
        }
        width: steppers.visible ? steppers.implicitWidth : 0
        visible: root.model.canStep
        enabled: !root.disabled
        opacity: root.disabled ? 0.4 : 1
        spacing: 2

        StepperButton {
            label: "Increase " + root.label
            systemName: "chevron.up"
            onTriggered: root.model.stepUp()
        }

        StepperButton {
            label: "Decrease " + root.label
            systemName: "chevron.down"
            onTriggered: root.model.stepDown()
        }
    }
}
