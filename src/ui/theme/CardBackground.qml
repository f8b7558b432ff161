import QtQuick
import QtQuick.Templates as T
import Velloran

/// A card. What it shows is its `contentItem`, which gets all the room inside the padding and decides the card's own size.
T.Control {
    id: root

    padding: Theme.spacing.lg
    implicitWidth: root.implicitContentWidth + root.leftPadding + root.rightPadding
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding

    // A layout works its size out only before the next frame.
    Component.onCompleted: root.contentItem?.ensurePolished()

    background: RoundedFace {
        radius: Theme.radius.card
        fill: Theme.cardFill
        stroke: Theme.cardStroke

        SoftShadow {
            z: -1
            radius: Theme.radius.card
            blur: 18
            offsetY: 12
            color: Theme.black(0.35)
        }

        // Opaque, as the renderer knows of plain rectangles only: it paints nothing below when something changes inside of the card.
        Rectangle {
            anchors.fill: parent
            anchors.margins: Theme.radius.card
            color: Theme.cardFill
        }
    }
}
