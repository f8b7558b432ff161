import QtQuick
import Velloran

/// What a number field says about its text: a button to store it while it is pending, else a badge shortly after it was
/// stored, else nothing. Both fade; the room they need opens and closes along.
Item {
    id: root

    /// Room on the left, while there is something to be seen.
    required property real gap
    required property bool pending
    required property bool updated

    signal updatePressed()

    readonly property Item button: updateButton.made as Item
    readonly property Item badge: updatedBadge.made as Item

    implicitWidth: root.pending ? root.gap + (root.button?.implicitWidth ?? 0)
                                : root.updated ? root.gap + (root.badge?.implicitWidth ?? 0) : 0
    implicitHeight: root.implicitWidth > 0 ? Math.max(root.button?.implicitHeight ?? 0, root.badge?.implicitHeight ?? 0) : 0

    Behavior on implicitWidth {
        EaseInOut { seconds: 0.18 }
    }

    OnDemand {
        id: updateButton

        wanted: root.pending || root.updated

        PlainButton {
            id: button

            // Fades in the first time as well.
            property bool isReady: false

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            label: "Update"
            size: 11
            leftPadding: 10
            rightPadding: 10
            topPadding: 4
            bottomPadding: 4
            faceRadius: 6
            // Taking the focus would commit before the press does.
            focusPolicy: Qt.NoFocus
            activeFocusOnTab: false
            enabled: root.pending
            visible: button.opacity > 0
            opacity: root.pending && button.isReady ? 1 : 0
            onTriggered: root.updatePressed()
            Component.onCompleted: button.isReady = true

            background: RoundedFace {
                radius: 6
                fill: Theme.accentBlue
            }

            Behavior on opacity {
                EaseInOut { seconds: 0.18 }
            }
        }
    }

    OnDemand {
        id: updatedBadge

        wanted: root.pending || root.updated

        Row {
            id: badge

            property bool isReady: false

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3
            visible: badge.opacity > 0
            opacity: root.updated && !root.pending && badge.isReady ? 1 : 0
            Component.onCompleted: badge.isReady = true

            Behavior on opacity {
                EaseInOut { seconds: 0.18 }
            }

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "checkmark.circle.fill"
                pointSize: 11
                color: Theme.statusRunning
            }

            BodyText {
                anchors.verticalCenter: parent.verticalCenter
                text: "Updated"
                size: 11
                weight: Font.DemiBold
                color: Theme.statusRunning
                Accessible.role: Accessible.AlertMessage
            }
        }
    }
}
