import QtQuick

/// The blurred shadow of a rounded rectangle that fills the parent. It belongs first among the parent's children.
BorderImage {
    id: root

    /// Corner radius of what casts the shadow.
    required property int radius
    /// The blur in points; its standard deviation is half of that.
    required property int blur
    property int offsetY: 0
    required property color color

    readonly property int reach: Math.ceil(root.blur * 1.5)
    // From this length on, the middle of an edge looks the same everywhere and can be stretched. Shorter ones are drawn to size.
    readonly property int enough: 2 * (root.reach + root.radius) + 1
    readonly property int shapeWidth: Math.min(root.enough, Math.max(1, Math.round(root.width) - 2 * root.reach))
    readonly property int shapeHeight: Math.min(root.enough, Math.max(1, Math.round(root.height) - 2 * root.reach))

    anchors {
        fill: parent
        leftMargin: -root.reach
        rightMargin: -root.reach
        topMargin: root.offsetY - root.reach
        bottomMargin: -root.offsetY - root.reach
    }
    source: "image://shadow/?width=" + root.shapeWidth + "&height=" + root.shapeHeight + "&radius=" + root.radius + "&blur="
            + root.blur + "&color=" + root.color.toString().slice(1)
    border {
        left: Math.floor((root.shapeWidth - 1) / 2) + root.reach
        right: root.border.left
        top: Math.floor((root.shapeHeight - 1) / 2) + root.reach
        bottom: root.border.top
    }
}
