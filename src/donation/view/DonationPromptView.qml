import QtQuick
import QtQuick.Layouts
import Velloran

/// Asks for a donation and, once the page for it has been opened, waits to hear that it is done. A new one asks anew.
Item {
    id: root

    required property DonationModel manager

    /// The page has been opened from here.
    property bool awaitingConfirmation: false

    readonly property int padding: 24

    implicitWidth: Math.max(480, buttons.implicitWidth) + 2 * root.padding
    implicitHeight: column.implicitHeight + 2 * root.padding

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.spacing.md

        Row {
            id: header

            width: parent.width
            spacing: 12

            Picture {
                id: mascot

                anchors.verticalCenter: parent.verticalCenter
                name: "DragonIdle"
                width: 56
                height: 56
            }

            Column {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - mascot.width - header.spacing
                spacing: 4

                BodyText {
                    width: parent.width
                    text: "Support Velloran"
                    size: 19
                    weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                }

                BodyText {
                    width: parent.width
                    text: "This app is built and maintained by one developer. If it's saving you time, a small donation keeps it going."
                    color: Theme.textSecondary
                    wrapMode: Text.Wrap
                }
            }
        }

        Item {
            width: parent.width
            height: note.height + 4
            visible: root.awaitingConfirmation

            BodyText {
                id: note

                y: 4
                width: parent.width
                text: "Stripe opened in your browser. Once your donation is complete, click below."
                size: 12.5
                color: Theme.textMuted
                wrapMode: Text.Wrap
            }
        }

        RowLayout {
            id: buttons

            width: parent.width
            spacing: 10

            ProminentButton {
                visible: !root.awaitingConfirmation
                label: "Donate via Stripe"
                systemImage: "heart.fill"
                onTriggered: {
                    root.manager.openDonationLink();
                    root.awaitingConfirmation = true;
                    completed.forceActiveFocus(focusReason);
                }
            }

            FaceButton {
                visible: !root.awaitingConfirmation
                label: "I've already donated"
                onTriggered: root.manager.acknowledgeAlreadyDonated()
            }

            ProminentButton {
                id: completed

                visible: root.awaitingConfirmation
                label: "I completed my donation"
                systemImage: "checkmark.circle.fill"
                onTriggered: root.manager.markDonated()
                // A double click on the button that stood here before is no answer: only a click of its own triggers.
                onDoubleClicked: {}
            }

            FaceButton {
                visible: root.awaitingConfirmation
                label: "Open link again"
                onTriggered: root.manager.openDonationLink()
            }

            Item {
                Layout.fillWidth: true
            }

            PlainButton {
                label: root.awaitingConfirmation ? "Cancel" : "Maybe later"
                size: 12.5
                weight: Font.Medium
                color: Theme.textMuted
                onTriggered: root.manager.snooze()
            }
        }
    }
}
