import QtQuick

/// The heading of a group of menu entries.
Item {
    id: root

    required property string title

    implicitWidth: text.implicitWidth + 20
    implicitHeight: text.implicitHeight + 8
    width: root.ListView.view ? root.ListView.view.width : root.implicitWidth

    BodyText {
        id: text

        anchors {
            left: parent.left
            right: parent.right
            leftMargin: 10
            rightMargin: 10
            verticalCenter: parent.verticalCenter
        }
        text: root.title
        size: 11
        weight: Font.DemiBold
        color: Theme.textMuted
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
}
