import QtQuick
import Velloran

/// Shows what it holds as one thing, as strongly as it is told to. An item's own opacity fades each part by itself, so that a
/// title would show the face of its button and not what lies behind the button.
Item {
    id: root

    /// 0…1; at 1 it costs nothing.
    required property real strength
    /// How far what it holds reaches beyond it, with its shadows.
    required property real reach
    default property alias content: holder.data

    Backdrop {
        id: backdrop

        anchors.fill: parent
        anchors.margins: -root.reach
        visible: root.strength < 1
    }

    Item {
        id: holder

        anchors.fill: parent
    }

    BackdropVeil {
        anchors.fill: backdrop
        visible: root.strength < 1
        opacity: 1 - root.strength
        backdrop: backdrop
    }
}
