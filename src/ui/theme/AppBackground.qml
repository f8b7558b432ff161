import QtQuick

/// The ground of the window: a dark gradient and a soft blue glow in its top left corner. Both follow the window's size at no
/// cost: the gradient is drawn, and the glow is one picture that only ever adds light.
Rectangle {
    id: root

    // Where the glow has faded to nothing.
    readonly property int glowRadius: 520

    gradient: Gradient {
        GradientStop { position: 0; color: Theme.appBackgroundTop }
        GradientStop { position: 1; color: Theme.appBackgroundBot }
    }
    clip: true

    Image {
        source: "image://background/glow?start=20&radius=" + root.glowRadius + "&color="
                + Theme.faded(Theme.accentBlue, 0.12).toString().slice(1)
        sourceSize.width: root.glowRadius
        sourceSize.height: root.glowRadius
        width: root.glowRadius
        height: root.glowRadius
    }
}
