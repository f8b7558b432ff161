import QtQuick
import QtQuick.Layouts
import Velloran

/// A number of seconds under the checkbox that switches it on.
RowLayout {
    id: root

    required property string label
    required property real value
    required property real from
    required property real to
    required property real step
    required property int decimals
    required property bool disabled
    /// What stands before the field, if anything.
    property string leading: ""
    property real indent: 0

    signal valueEdited(real newValue)

    spacing: 10
    Layout.leftMargin: root.indent

    BodyText {
        visible: root.leading !== ""
        text: root.leading
        size: 13
        color: Theme.textSecondary
    }

    NumberField {
        id: field

        Layout.preferredWidth: Math.max(110, field.minimumWidth)
        label: root.label
        disabled: root.disabled

        model: RealFieldModel {
            value: root.value
            from: root.from
            to: root.to
            step: root.step
            decimals: root.decimals
            onStored: seconds => root.valueEdited(seconds)
        }
    }

    BodyText {
        Layout.fillWidth: true
        text: "seconds"
        size: 13
        weight: Font.Medium
        color: Theme.textSecondary
    }
}
