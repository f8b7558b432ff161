import QtQuick
import Velloran

/// The ground of the window: a dark gradient and a soft blue glow in its top left corner, which only ever adds light.
Rectangle {
    id: root

    // Where the glow has faded to nothing.
    readonly property int glowRadius: 520

    gradient: Gradient {
        GradientStop { position: 0; color: Theme.appBackgroundTop }
        GradientStop { position: 1; color: Theme.appBackgroundBot }
    }
    clip: true

    Glow {
        width: root.glowRadius
        height: root.glowRadius
        start: 20
        color: Theme.faded(Theme.accentBlue, 0.12)
    }
}
