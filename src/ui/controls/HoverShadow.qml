import QtQuick
import Velloran

/// The glow under an action button, which grows wider and stronger as the pointer comes.
Item {
    id: root

    required property int radius
    /// The colour at full strength; the glow takes 0.35 of it, or 0.5 under the pointer.
    required property color color
    /// How far the pointer has come, 0…1.
    required property real hover
    /// How far the glow goes beyond what it lies under, at the most.
    readonly property int reach: Math.ceil(root.wideBlur * 1.5) + root.offset

    readonly property int wideBlur: 18
    readonly property int offset: 8

    SoftShadow {
        radius: root.radius
        blur: 12
        offsetY: root.offset
        color: Theme.faded(root.color, 0.35)
        opacity: 1 - root.hover
        visible: root.hover < 1
    }

    OnDemand {
        wanted: root.hover > 0

        SoftShadow {
            radius: root.radius
            blur: root.wideBlur
            offsetY: root.offset
            color: Theme.faded(root.color, 0.5)
            opacity: root.hover
            visible: root.hover > 0
        }
    }
}
