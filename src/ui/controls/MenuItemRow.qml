import QtQuick

/// What a menu entry shows.
Item {
    id: root

    required property string label
    /// The name of an icon, or nothing.
    required property string systemImage
    required property bool destructive
    /// Whether the entry opens a further menu.
    required property bool leadsOn

    readonly property real before: root.systemImage === "" ? 0 : symbol.width + 8
    readonly property real after: root.leadsOn ? arrow.width + 12 : 0

    implicitWidth: root.before + text.implicitWidth + root.after
    implicitHeight: text.implicitHeight

    Icon {
        id: symbol

        anchors.verticalCenter: parent.verticalCenter
        visible: root.systemImage !== ""
        name: root.systemImage
        pointSize: 13
        color: root.destructive ? Theme.statusError : Theme.textSecondary
    }

    BodyText {
        id: text

        anchors {
            left: parent.left
            right: parent.right
            leftMargin: root.before
            rightMargin: root.after
            verticalCenter: parent.verticalCenter
        }
        text: root.label
        size: 13
        weight: Font.Medium
        color: root.destructive ? Theme.statusError : Theme.textPrimary
        elide: Text.ElideMiddle
        exposed: false
    }

    Icon {
        id: arrow

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: root.leadsOn
        name: "chevron.down"
        pointSize: 10
        color: Theme.textMuted
        rotation: -90
    }
}
