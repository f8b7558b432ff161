import QtQuick

/// What stands on the face of a button: an icon, if one is named, and the label.
Item {
    id: root

    required property string systemImage
    required property real iconSize
    required property string label
    required property real size
    required property int weight
    required property color color

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
            pointSize: root.iconSize
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
