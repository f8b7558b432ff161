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

    implicitWidth: root.pending ? root.gap + button.implicitWidth : root.updated ? root.gap + badge.implicitWidth : 0
    implicitHeight: root.implicitWidth > 0 ? Math.max(button.implicitHeight, badge.implicitHeight) : 0

    Behavior on implicitWidth {
        EaseInOut { seconds: 0.18 }
    }

    PlainButton {
        id: button

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
        opacity: root.pending ? 1 : 0
        onTriggered: root.updatePressed()

        background: RoundedFace {
            radius: 6
            fill: Theme.accentBlue
        }

        Behavior on opacity {
            EaseInOut { seconds: 0.18 }
        }
    }

    Row {
        id: badge

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
        visible: badge.opacity > 0
        opacity: root.updated && !root.pending ? 1 : 0

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
