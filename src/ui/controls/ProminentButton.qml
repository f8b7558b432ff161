import QtQuick

/// The button for what a sheet is there for.
FaceButton {
    leftPadding: 14
    rightPadding: 14
    fill: Theme.accentBlue
    stroke: Theme.accentBlue
}
