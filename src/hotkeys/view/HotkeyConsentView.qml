import QtQuick

/// Says what the program would add to the user's own shortcuts, and asks whether it may.
Item {
    id: root

    /// The shortcut, in the desktop's words.
    required property string shortcut

    signal agreed
    signal refused

    readonly property int padding: 24

    implicitWidth: Math.max(420, buttons.implicitWidth + 2 * root.padding)
    implicitHeight: column.implicitHeight + 2 * root.padding

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.spacing.md

        BodyText {
            width: parent.width
            text: "Add " + root.shortcut + " to your shortcuts?"
            size: 17
            weight: Font.DemiBold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }

        BodyText {
            width: parent.width
            text: "This desktop gives programs no hotkeys. Velloran can put one among your own keyboard shortcuts, which runs a command that starts or stops clicking. It is there while Velloran runs, and goes when you clear the hotkey."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }

        Row {
            id: buttons

            anchors.right: parent.right
            spacing: Theme.spacing.sm

            FaceButton {
                label: "Not Now"
                onTriggered: root.refused()
            }

            ProminentButton {
                label: "Add Shortcut"
                onTriggered: root.agreed()
            }
        }
    }
}
