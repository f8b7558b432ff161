import QtQuick

/// What the program is, and what does not work on this desktop.
Item {
    id: root

    /// Sentences; none hides the section.
    required property list<string> limits

    signal done

    readonly property int padding: 24

    implicitWidth: 420
    implicitHeight: column.implicitHeight + 2 * root.padding

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.spacing.md

        Row {
            width: parent.width
            spacing: 14

            Picture {
                id: picture

                name: "DragonIdle"
                width: 64
                height: 64
            }

            Column {
                anchors.verticalCenter: picture.verticalCenter
                width: parent.width - picture.width - parent.spacing
                spacing: 4

                BodyText {
                    text: "Velloran"
                    size: 19
                    weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }

                BodyText {
                    text: "Version " + Qt.application.version
                    color: Theme.textSecondary
                }
            }
        }

        BodyText {
            width: parent.width
            text: "An exact, light and safe auto-clicker for your desktop."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }

        Column {
            width: parent.width
            visible: root.limits.length > 0
            spacing: 6

            BodyText {
                text: "This desktop"
                weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }

            Repeater {
                model: root.limits

                BodyText {
                    required property string modelData

                    width: parent.width
                    text: modelData
                    size: 12.5
                    color: Theme.textSecondary
                    wrapMode: Text.Wrap
                }
            }
        }

        FaceButton {
            anchors.right: parent.right
            label: "Close"
            onTriggered: root.done()
        }
    }
}
