import QtQuick

/// The middle of an action button.
Item {
    id: root

    required property string icon
    required property real iconSize
    required property string title
    required property real titleSize

    readonly property int spacing: 10

    implicitWidth: symbol.width + root.spacing + text.implicitWidth
    implicitHeight: Math.max(symbol.height, text.implicitHeight)

    Icon {
        id: symbol

        // On a whole point, or the drawing blurs.
        x: Math.round(Math.max(0, root.width - root.implicitWidth) / 2)
        anchors.verticalCenter: parent.verticalCenter
        name: root.icon
        pointSize: root.iconSize
    }

    BodyText {
        id: text

        anchors.left: symbol.right
        anchors.leftMargin: root.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(text.implicitWidth, root.width - symbol.width - root.spacing)
        text: root.title
        size: root.titleSize
        weight: Font.DemiBold
        elide: Text.ElideRight
        exposed: false
    }
}
