import QtQuick

/// One of the actions of the footer bar.
FaceButton {
    color: Theme.textSecondary
    faceRadius: 10
    topPadding: 8
    bottomPadding: 8
}
