import QtQuick
import Velloran

/// The band at the top of the window with the mascot and the program's name. It holds no buttons.
Rectangle {
    id: root

    /// Room at the left end that belongs to somebody else.
    property real leftInset: 0

    implicitWidth: row.width + row.x + 20
    implicitHeight: Math.max(64, row.implicitHeight + 12)
    color: Theme.faded(Theme.appBackgroundTop, 0.6)

    Row {
        id: row

        x: 20 + root.leftInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Picture {
            name: "DragonIdle"
            width: 52
            height: 52
            anchors.verticalCenter: parent.verticalCenter
        }

        BodyText {
            anchors.verticalCenter: parent.verticalCenter
            text: "Velloran"
            size: 18
            weight: Font.DemiBold
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
        fill: Theme.white(0.05)
    }
}
