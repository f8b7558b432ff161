import QtQuick
import Velloran

/// The one window of the program, with everything in it.
ShellWindow {
    id: root

    required property StoreModel store
    required property DonationModel donations
    /// What does not work on this desktop.
    property desktopLimits desktopLimits

    limits: root.desktopLimits.sentences

    startHeight: content.implicitHeight
    onAboutToShow: content.settle()

    Component.onCompleted: {
        root.store.refreshPermission();
        root.donations.evaluate();
    }

    options: Component {
        OptionsView {
            store: root.store
            onDone: root.isOptionsShown = false
        }
    }

    DesktopAppearance {
        id: appearance
    }

    Binding {
        target: Theme
        property: "reducedMotion"
        value: appearance.reducedMotion
    }

    Binding {
        target: Theme
        property: "highContrast"
        value: appearance.highContrast
    }

    Binding {
        target: Theme
        property: "fontScale"
        value: appearance.textScale
    }

    ContentView {
        id: content

        anchors.fill: parent
        store: root.store
        limits: root.desktopLimits
        leftInset: root.leftInset
    }

    DonationSheet {
        donations: root.donations
    }
}
