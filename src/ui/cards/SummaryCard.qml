import QtQuick
import QtQuick.Layouts
import Velloran

/// The configuration in six lines.
CardBackground {
    id: root

    required property StoreModel store

    contentItem: ColumnLayout {
        spacing: 12

        BodyText {
            text: "Summary"
            size: 16
            weight: Font.DemiBold

            Accessible.role: Accessible.Heading
        }

        Divider {
            Layout.fillWidth: true
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "computermouse.fill"
            title: "Mouse Button"
            value: root.store.mouseButtonText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "clock.fill"
            title: "Click Interval"
            value: root.store.intervalText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "flag.fill"
            title: "Stop After"
            value: root.store.stopText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "keyboard.fill"
            title: "Hotkey"
            value: root.store.hotkeyText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "hourglass"
            title: "Delay"
            value: root.store.delayText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "scope"
            title: "Stationary Check"
            value: root.store.stationaryText
        }
    }
}
