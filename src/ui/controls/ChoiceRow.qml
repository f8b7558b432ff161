import QtQuick

/// What a checkbox and a radio button show: a mark, which is the children, and a label.
Item {
    id: root

    required property string label
    /// Whether the control has the keyboard; its mark wears the ring.
    required property bool isFocused
    required property bool isHovered
    required property bool isPressed
    property real markRadius: 5
    default property alias mark: holder.data

    readonly property int spacing: 10

    implicitWidth: holder.width + root.spacing + text.implicitWidth
    implicitHeight: Math.max(holder.height, text.implicitHeight)

    Item {
        id: holder

        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
    }

    PointerVeil {
        anchors.fill: holder
        radius: root.markRadius
        hovered: root.isHovered
        pressed: root.isPressed
    }

    FocusRing {
        anchors.fill: holder
        shown: root.isFocused
        around: root.markRadius
    }

    BodyText {
        id: text

        anchors.left: holder.right
        anchors.leftMargin: root.spacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.label
        size: 14
        weight: Font.Medium
        wrapMode: Text.WordWrap
        exposed: false
    }
}
