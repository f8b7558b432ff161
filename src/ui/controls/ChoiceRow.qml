import QtQuick
import Velloran

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

    OnDemand {
        wanted: root.isHovered || root.isPressed || root.isFocused

        Item {
            id: answers

            // What comes into being under the pointer fades in all the same.
            property bool isReady: false

            anchors.fill: holder
            Component.onCompleted: answers.isReady = true

            PointerVeil {
                radius: root.markRadius
                hovered: answers.isReady && root.isHovered
                pressed: answers.isReady && root.isPressed
            }

            FocusRing {
                shown: root.isFocused
                around: root.markRadius
            }
        }
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
