import QtQuick
import Velloran

/// The heading of a card: an icon on a faint tile of its own colour, and the title.
Item {
    id: root

    required property string icon
    required property string title
    property color iconColor: Theme.accentBlue

    readonly property int spacing: 10

    implicitWidth: tile.width + root.spacing + label.implicitWidth
    implicitHeight: Math.max(tile.height, label.implicitHeight)

    Accessible.role: Accessible.Heading
    Accessible.name: root.title

    RoundedFace {
        id: tile

        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(28, symbol.width + 8)
        height: tile.width
        radius: 8
        fill: Theme.faded(root.iconColor, 0.14)

        Icon {
            id: symbol

            anchors.centerIn: parent
            name: root.icon
            pointSize: 16
            color: root.iconColor
        }
    }

    BodyText {
        id: label

        anchors.left: tile.right
        anchors.leftMargin: root.spacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
        size: 17
        weight: Font.DemiBold
        elide: Text.ElideRight
        exposed: false
    }
}
