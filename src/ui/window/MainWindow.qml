import QtQuick
import Velloran

/// The one window of the program, with everything in it.
ShellWindow {
    id: root

    required property ConfigModel config
    required property RunModel run
    required property PresetsModel presets
    required property ConfigFiles files
    required property DonationModel donations
    required property HotkeyConsentModel hotkeyConsent
    /// What the desktop's user wishes for.
    required property DesktopAppearance appearance
    /// What does not work on this desktop.
    property desktopLimits desktopLimits

    limits: root.desktopLimits.sentences
    hotkeyAdvice: root.desktopLimits.hotkeyAdvice
    hotkeyLine: root.desktopLimits.hotkeyLine

    startHeight: content.implicitHeight
    onAboutToShow: content.settle()

    Component.onCompleted: {
        root.run.refreshPermission();
        root.donations.evaluate();
    }

    options: Component {
        Loader {
            focus: true
            // By name: its types are not read before it is shown.
            Component.onCompleted: setSource("MainOptions.qml", { window: root })
        }
    }

    WindowExposure {
        id: exposure
    }

    Binding {
        target: root.run
        property: "isSeen"
        value: exposure.exposed
    }

    Binding {
        target: Theme
        property: "reducedMotion"
        value: root.appearance.reducedMotion
    }

    Binding {
        target: Theme
        property: "highContrast"
        value: root.appearance.highContrast
    }

    Binding {
        target: Theme
        property: "fontScale"
        value: root.appearance.textScale
    }

    ContentView {
        id: content

        anchors.fill: parent
        config: root.config
        run: root.run
        limits: root.desktopLimits
        leftInset: root.leftInset
    }

    OnDemand {
        wanted: root.donations.promptVisible
        source: "DonationSheet.qml"
        properties: ({ donations: root.donations })
    }

    OnDemand {
        wanted: root.hotkeyConsent.isAsking
        source: "HotkeyConsentSheet.qml"
        properties: ({ consent: root.hotkeyConsent })
    }
}
