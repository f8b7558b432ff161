import QtQuick
import QtQuick.Layouts
import Velloran

/// What the clicker is doing now.
CardBackground {
    id: root

    required property RunModel run

    readonly property color statusColor: {
        switch (root.run.status) {
        case RunModel.Arming:
            return Theme.statusArming;
        case RunModel.Delayed:
            return Theme.statusDelayed;
        case RunModel.Running:
            return Theme.statusRunning;
        case RunModel.Paused:
            return Theme.statusPaused;
        case RunModel.Completed:
            return Theme.statusCompleted;
        case RunModel.Error:
            return Theme.statusError;
        default:
            return Theme.statusIdle;
        }
    }

    contentItem: ColumnLayout {
        spacing: 14

        RowLayout {
            spacing: 10

            StatusDot {
                color: root.statusColor
            }

            BodyText {
                Layout.fillWidth: true
                text: "Status"
                size: 15
                weight: Font.DemiBold
                color: Theme.textSecondary
            }
        }

        DragonAnimationView {
            Layout.fillWidth: true
            flying: root.run.isFlying
        }

        ColumnLayout {
            spacing: 6

            StatusHeadline {
                Layout.fillWidth: true
                headline: root.run.headline
            }

            BodyText {
                Layout.fillWidth: true
                text: root.run.message
                size: 13
                weight: Font.Medium
                color: Theme.textSecondary
                wrapMode: Text.Wrap

                // Told to the user as it changes.
                Accessible.role: Accessible.AlertMessage
            }
        }

        OnDemand {
            wanted: !root.run.hasAccessibilityPermission

            PlainButton {
                id: grant

                visible: !root.run.hasAccessibilityPermission
                label: "Grant Accessibility Permission"
                onTriggered: root.run.openAccessibilitySettings()

                contentItem: Row {
                    spacing: 6

                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "exclamationmark.shield.fill"
                        pointSize: 12
                        color: Theme.statusError
                    }

                    BodyText {
                        anchors.verticalCenter: parent.verticalCenter
                        text: grant.label
                        size: 12
                        weight: Font.DemiBold
                        color: Theme.statusError
                        exposed: false
                    }
                }
            }
        }
    }
}
