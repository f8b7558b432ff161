import QtQuick
import Velloran

/// The mascot: still while `flying` is false, else hovering on the spot.
Item {
    id: root

    required property bool flying
    /// Nothing moves while this is false; the motion goes on where it was.
    property bool running: exposure.exposed

    readonly property bool moves: root.flying && !Theme.reducedMotion

    implicitWidth: 180
    implicitHeight: 160

    WindowExposure {
        id: exposure
    }

    Picture {
        anchors.centerIn: parent
        width: 160
        height: 160
        name: "DragonIdle"
        opacity: 1 - body.presence
        visible: opacity > 0
    }

    Picture {
        id: body

        // How much of the flying one is to be seen, 0…1.
        property real presence: root.flying ? 1 : 0
        property real offsetX: 0
        property real offsetY: 0
        property real tilt: 0

        anchors.centerIn: parent
        anchors.horizontalCenterOffset: body.offsetX
        anchors.verticalCenterOffset: body.offsetY
        rotation: body.tilt
        width: 180
        height: 140
        name: "DragonFly"
        opacity: body.presence
        visible: opacity > 0

        Behavior on presence {
            EaseInOut { seconds: 0.35 }
        }
    }

    Sway {
        target: body
        property: "offsetY"
        reach: -16
        seconds: 1.3
        moves: root.moves
        isHeld: !root.running
    }

    Sway {
        target: body
        property: "offsetX"
        reach: 10
        seconds: 2.1
        moves: root.moves
        isHeld: !root.running
    }

    Sway {
        target: body
        property: "tilt"
        reach: -4
        seconds: 2.1
        moves: root.moves
        isHeld: !root.running
    }
}
