import QtQuick

/// A glowing dot in the colour of the status.
Rectangle {
    id: root

    implicitWidth: 10
    implicitHeight: 10
    radius: 5
    antialiasing: true

    SoftShadow {
        z: -1
        radius: 5
        blur: 6
        color: Theme.faded(root.color, 0.7)
    }
}
