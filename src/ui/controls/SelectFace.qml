import QtQuick

/// What the face of a chooser shows: the current choice, and a chevron at the far end.
Item {
    id: root

    required property string icon
    required property string name

    readonly property int spacing: 8

    implicitWidth: symbol.width + text.implicitWidth + chevron.width + 3 * root.spacing + 4
    implicitHeight: Math.max(symbol.height, text.implicitHeight)

    Icon {
        id: symbol

        anchors.verticalCenter: parent.verticalCenter
        name: root.icon
        pointSize: 13
        color: Theme.textSecondary
    }

    BodyText {
        id: text

        anchors {
            left: symbol.right
            leftMargin: root.spacing
            right: chevron.left
            rightMargin: 2 * root.spacing + 4
            verticalCenter: parent.verticalCenter
        }
        text: root.name
        size: 14
        weight: Font.Medium
        elide: Text.ElideRight
        exposed: false
    }

    Icon {
        id: chevron

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.down"
        pointSize: 11
        color: Theme.textMuted
    }
}
