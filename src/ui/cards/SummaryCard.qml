import QtQuick
import QtQuick.Layouts
import Velloran

/// The configuration in six lines.
CardBackground {
    id: root

    required property ConfigModel config

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
            value: root.config.mouseButtonText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "clock.fill"
            title: "Click Interval"
            value: root.config.intervalText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "flag.fill"
            title: "Stop After"
            value: root.config.stopText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "keyboard.fill"
            title: "Hotkey"
            value: root.config.hotkeyText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "hourglass"
            title: "Delay"
            value: root.config.delayText
        }

        SummaryRow {
            Layout.fillWidth: true
            icon: "scope"
            title: "Stationary Check"
            value: root.config.stationaryText
        }
    }
}
