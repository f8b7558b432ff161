import QtQuick
import Velloran

/// One half of a pair of steppers. It never takes the focus: leaving a field would commit what stepping is to drop.
PlainButton {
    id: root

    /// The name of the icon.
    required property string systemName

    focusPolicy: Qt.NoFocus
    activeFocusOnTab: false
    implicitWidth: Math.max(16, Math.round(Theme.scaled(9)))
    implicitHeight: Math.max(11, Math.round(Theme.scaled(9)))
    faceRadius: 3
    hasPointerLook: true

    background: RoundedFace {
        radius: 3
        fill: root.hovered ? Theme.white(0.06) : "transparent"
    }

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: root.systemName
            pointSize: 9
            color: Theme.textSecondary
        }
    }
}
