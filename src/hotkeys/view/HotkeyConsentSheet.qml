import QtQuick
import Velloran

/// Asks for the consent to a hotkey among the user's own shortcuts, when it is needed and nothing else is open. Closing it without
/// an answer is one: not now.
Sheet {
    id: root

    required property HotkeyConsentModel consent

    shown: root.consent.isAsking
    waitsForOthers: true
    title: "Keyboard Shortcut"
    onClosedByUser: root.consent.refuse()

    HotkeyConsentView {
        shortcut: root.consent.shortcut
        onAgreed: root.consent.agree()
        onRefused: root.consent.refuse()
    }
}
