import QtQuick
import QtQuick.Layouts

/// One line of the summary.
RowLayout {
    id: root

    required property string icon
    required property string title
    required property string value

    spacing: 10

    Accessible.role: Accessible.StaticText
    Accessible.name: root.title + ": " + root.value

    Item {
        Layout.preferredWidth: Math.max(18, symbol.width)
        Layout.preferredHeight: symbol.height
        Layout.alignment: Qt.AlignTop

        Icon {
            id: symbol

            anchors.horizontalCenter: parent.horizontalCenter
            name: root.icon
            pointSize: 13
            color: Theme.textSecondary
        }
    }

    ColumnLayout {
        Layout.alignment: Qt.AlignTop
        spacing: 2

        BodyText {
            Layout.fillWidth: true
            text: root.title
            size: 12.5
            weight: Font.Medium
            color: Theme.textSecondary
            wrapMode: Text.WordWrap
        }

        BodyText {
            Layout.fillWidth: true
            text: root.value
            size: 14
            weight: Font.DemiBold
            wrapMode: Text.Wrap
        }
    }
}
