import QtQuick
import Velloran

/// Shows the donation prompt when it is due and nothing else is open. Closing it without an answer only puts it away.
Sheet {
    id: root

    required property DonationModel donations

    shown: root.donations.promptVisible
    waitsForOthers: true
    title: "Support Velloran"
    onClosedByUser: root.donations.promptVisible = false

    DonationPromptView {
        manager: root.donations
    }
}
