import QtQuick

/// A hairline across the width it is given.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.cardStroke
}
