import QtQuick
import Velloran

/// One line of text with a border.
TextBox {
    id: root

    /// What is asked for; stands in the field while it is empty, and names it.
    required property string label

    implicitWidth: 160
    implicitHeight: root.contentHeight + root.topPadding + root.bottomPadding
    leftPadding: 10
    rightPadding: 10
    topPadding: 7
    bottomPadding: 7
    font: Theme.font(13, Font.Normal)
    color: Theme.textPrimary
    selectionColor: Theme.accentBlue
    selectedTextColor: Theme.textPrimary
    placeholderText: root.label
    verticalAlignment: TextInput.AlignVCenter

    Accessible.role: Accessible.EditableText
    Accessible.name: root.label
    Accessible.focusable: true

    BodyText {
        anchors.fill: parent
        anchors.leftMargin: root.leftPadding
        anchors.rightMargin: root.rightPadding
        visible: root.length === 0 && root.preeditText === ""
        text: root.label
        color: Theme.textMuted
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        exposed: false
    }

    background: RoundedFace {
        radius: Theme.radius.field
        fill: Theme.fieldFill
        stroke: root.isEdited ? Theme.fieldStrokeFocus : Theme.fieldStroke
    }
}
