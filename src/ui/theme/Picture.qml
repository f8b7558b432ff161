import QtQuick
import QtQuick.Window

/// One of the program's own pictures, kept in proportion inside the size given. It is scaled down once, while it is read, and
/// never coarser than the screen.
Image {
    /// The picture's name, without its extension.
    required property string name

    source: "art/" + name + ".png"
    sourceSize: Qt.size(Math.ceil(width * Screen.devicePixelRatio), Math.ceil(height * Screen.devicePixelRatio))
    fillMode: Image.PreserveAspectFit
    smooth: true
}
