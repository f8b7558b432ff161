import QtQuick

/// The heading of a card: an icon on a faint tile of its own colour, and the title.
Item {
    id: root

    required property string icon
    required property string title
    property color iconColor: Theme.accentBlue

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Accessible.role: Accessible.Heading
    Accessible.name: root.title

    Row {
        id: row

        width: parent.width
        spacing: 10

        Rectangle {
            id: tile

            width: Math.max(28, symbol.width + 12)
            height: width
            radius: 8
            color: Theme.faded(root.iconColor, 0.14)
            antialiasing: true
            anchors.verticalCenter: parent.verticalCenter

            Icon {
                id: symbol

                anchors.centerIn: parent
                name: root.icon
                pointSize: 16
                color: root.iconColor
            }
        }

        BodyText {
            width: Math.min(implicitWidth, Math.max(0, row.width - tile.width - row.spacing))
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            size: 17
            weight: Font.DemiBold
            elide: Text.ElideRight
            exposed: false
        }
    }
}
