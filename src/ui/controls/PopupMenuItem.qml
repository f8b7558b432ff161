import QtQuick
import QtQuick.Templates as T

/// An entry of a pull-down menu. Its name is shown letter for letter, and cut where it is too long for any menu.
T.MenuItem {
    id: root

    required property string label
    /// The name of an icon, or nothing.
    property string systemImage: ""
    /// Whether choosing it takes something away.
    property bool destructive: false

    implicitWidth: content.implicitWidth + root.leftPadding + root.rightPadding
    implicitHeight: content.implicitHeight + root.topPadding + root.bottomPadding
    width: root.ListView.view ? root.ListView.view.width : root.implicitWidth
    leftPadding: 10
    rightPadding: 10
    topPadding: 6
    bottomPadding: 6
    hoverEnabled: true

    Accessible.role: Accessible.MenuItem
    Accessible.name: root.label
    Accessible.onPressAction: root.click()

    contentItem: Item {
        id: content

        readonly property color color: root.destructive ? Theme.statusError : Theme.textPrimary
        readonly property real before: root.systemImage === "" ? 0 : symbol.width + 8
        readonly property real after: root.subMenu ? arrow.width + 12 : 0

        implicitWidth: content.before + text.implicitWidth + content.after
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
                leftMargin: content.before
                rightMargin: content.after
                verticalCenter: parent.verticalCenter
            }
            text: root.label
            size: 13
            weight: Font.Medium
            color: content.color
            elide: Text.ElideMiddle
            exposed: false
        }

        Icon {
            id: arrow

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.subMenu
            name: "chevron.down"
            pointSize: 10
            color: Theme.textMuted
            rotation: -90
        }
    }

    background: Rectangle {
        radius: 6
        color: root.highlighted ? Theme.accentBlueSoft : "transparent"
        antialiasing: true
    }
}
