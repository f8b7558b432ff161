import QtQuick

/// A symbol drawn in one colour, as tall as its font would be.
Image {
    id: root

    /// The symbol: the name of a drawing in the icon family, without its extension.
    required property string name
    /// The size of the font that the symbol stands beside, in points.
    property real pointSize: 13
    property color color: Theme.textPrimary

    readonly property int side: Math.round(Theme.scaled(root.pointSize))

    source: root.name === "" ? "" : "image://icon/" + root.name + "?color=" + root.color.toString().slice(1)
    sourceSize.width: root.side
    sourceSize.height: root.side
    width: root.side
    height: root.side
}
