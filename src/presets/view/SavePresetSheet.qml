import QtQuick

/// Asks for the name of a new preset.
FocusScope {
    id: root

    /// The name so far.
    required property string name

    /// The name was typed on.
    signal nameEdited(string newName)
    signal confirm
    signal cancel

    readonly property int padding: 24

    implicitWidth: 380
    implicitHeight: column.implicitHeight + 2 * root.padding

    Keys.onReturnPressed: root.confirm()
    Keys.onEnterPressed: root.confirm()
    Component.onCompleted: field.selectAll()

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.spacing.md

        BodyText {
            width: parent.width
            text: "Save preset"
            size: 17
            weight: Font.DemiBold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }

        BodyText {
            width: parent.width
            text: "Capture your current settings as a reusable preset."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }

        NameField {
            id: field

            width: parent.width
            focus: true
            label: "Preset name"
            text: root.name
            onTextEdited: root.nameEdited(text)
            onAccepted: root.confirm()
        }

        Row {
            anchors.right: parent.right
            spacing: Theme.spacing.sm

            FaceButton {
                label: "Cancel"
                onTriggered: root.cancel()
            }

            ProminentButton {
                label: "Save"
                onTriggered: root.confirm()
            }
        }
    }
}
