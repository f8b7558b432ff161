import QtQuick
import Velloran

/// How a control answers the pointer when it has no look of its own for that: a quiet veil over its face while the pointer is
/// on it, a denser one while it is held down, and nothing at rest.
RoundedFace {
    id: root

    required property bool hovered
    required property bool pressed

    property real density: root.pressed ? Theme.pressedVeil : root.hovered ? Theme.hoverVeil : 0

    Behavior on density {
        EaseInOut { seconds: 0.15 }
    }

    anchors.fill: parent
    visible: root.density > 0
    fill: Theme.white(root.density)
}
