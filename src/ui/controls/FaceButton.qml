import QtQuick
import Velloran

/// A button on a rounded face: its label, and an icon before it where one is named.
PlainButton {
    id: root

    /// The name of the icon, or nothing.
    property string systemImage: ""
    property color fill: Theme.fieldFill
    property color stroke: Theme.fieldStroke

    leftPadding: 12
    rightPadding: 12
    topPadding: 9
    bottomPadding: 9

    background: RoundedFace {
        radius: root.faceRadius
        fill: root.fill
        stroke: root.stroke
    }

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 6

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.systemImage !== ""
                name: root.systemImage
                pointSize: 12
                color: root.color
            }

            BodyText {
                anchors.verticalCenter: parent.verticalCenter
                text: root.label
                size: root.size
                weight: root.weight
                color: root.color
                exposed: false
            }
        }
    }
}
