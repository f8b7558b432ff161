import QtQuick
import QtQuick.Layouts
import Velloran

/// A word of caution under the cards.
Item {
    id: root

    implicitWidth: row.implicitWidth + 2 * Theme.spacing.md
    implicitHeight: row.implicitHeight + 24

    RoundedFace {
        anchors.fill: parent
        radius: 14
        fill: Theme.faded(Theme.cardFill, 0.55)
        stroke: Theme.cardStroke
    }

    RowLayout {
        id: row

        x: Theme.spacing.md
        y: 12
        width: root.width - 2 * Theme.spacing.md
        spacing: 10

        Icon {
            Layout.alignment: Qt.AlignTop
            name: "info.circle.fill"
            pointSize: 14
            color: Theme.accentBlue
        }

        BodyText {
            Layout.fillWidth: true
            text: "Velloran will automatically click based on your settings. Use responsibly and respect other applications."
            size: 12.5
            color: Theme.textSecondary
            wrapMode: Text.WordWrap
        }
    }
}
