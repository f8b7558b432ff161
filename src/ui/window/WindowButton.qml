import QtQuick

/// A button of the window's frame. A pointer leaves the focus where it is.
PlainButton {
    id: root

    /// The name of the icon.
    required property string systemImage

    implicitWidth: 32
    implicitHeight: 32
    faceRadius: 16
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.45

    // Has no face: what surrounds the icon is the button's.
    background: Item {}

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: root.systemImage
            pointSize: 14
            color: root.hovered ? Theme.textPrimary : Theme.textSecondary
        }
    }
}
