import QtQuick
import QtQuick.Layouts
import Velloran

/// What the clicker is doing now.
CardBackground {
    id: root

    required property StoreModel store

    readonly property color statusColor: {
        switch (root.store.status) {
        case StoreModel.Arming:
            return Theme.statusArming;
        case StoreModel.Delayed:
            return Theme.statusDelayed;
        case StoreModel.Running:
            return Theme.statusRunning;
        case StoreModel.Paused:
            return Theme.statusPaused;
        case StoreModel.Completed:
            return Theme.statusCompleted;
        case StoreModel.Error:
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
            flying: root.store.isFlying
        }

        ColumnLayout {
            spacing: 6

            StatusHeadline {
                Layout.fillWidth: true
                headline: root.store.headline
            }

            BodyText {
                Layout.fillWidth: true
                text: root.store.message
                size: 13
                weight: Font.Medium
                color: Theme.textSecondary
                wrapMode: Text.Wrap

                // Told to the user as it changes.
                Accessible.role: Accessible.AlertMessage
            }
        }

        PlainButton {
            id: grant

            visible: !root.store.hasAccessibilityPermission
            label: "Grant Accessibility Permission"
            onTriggered: root.store.openAccessibilitySettings()

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
