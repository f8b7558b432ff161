import QtQuick

/// One of the program's own pictures, kept in proportion inside the size given. It is scaled down once, while it is read, and
/// never coarser than the screen.
Image {
    id: root

    /// The picture's name, without its extension.
    required property string name

    source: "art/" + root.name + ".png"
    sourceSize.width: Math.ceil(root.width * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(root.height * Screen.devicePixelRatio)
    fillMode: Image.PreserveAspectFit
    smooth: true
}
