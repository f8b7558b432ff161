import QtQuick
import Velloran

/// One line of text with a border.
TextBox {
    id: root

    implicitWidth: 160
    implicitHeight: root.contentHeight + root.topPadding + root.bottomPadding
    leftPadding: 10
    rightPadding: 10
    topPadding: 7
    bottomPadding: 7
    selectionColor: Theme.accentBlue
    placeholder: root.label
    placeholderText: root.label

    Accessible.role: Accessible.EditableText
    Accessible.focusable: true

    background: RoundedFace {
        radius: Theme.radius.field
        fill: Theme.fieldFill
        stroke: root.isEdited ? Theme.fieldStrokeFocus : Theme.fieldStroke
    }
}
