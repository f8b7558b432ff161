import QtQuick
import Velloran

/// The one window of the program, with everything in it.
ShellWindow {
    id: root

    required property StoreModel store
    required property DonationModel donations

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
        anchors.fill: parent
        store: root.store
        leftInset: root.leftInset
    }

    DonationSheet {
        donations: root.donations
    }
}
