import QtQuick
import QtQuick.Templates as T

/// A line between groups of menu entries.
T.MenuSeparator {
    id: root

    topPadding: 5
    bottomPadding: 5
    leftPadding: 10
    rightPadding: 10
    implicitWidth: root.leftPadding + root.rightPadding
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding
    width: root.ListView.view ? root.ListView.view.width : root.implicitWidth

    contentItem: Divider {
        fill: Theme.cardStrokeStrong
    }
}
