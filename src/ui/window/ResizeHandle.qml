import QtQuick

/// A strip at the edge of the window, or a corner, by which its size is changed.
DragArea {
    id: root

    required property Window window
    /// The edges that it moves, as `Qt.Edges`.
    required property int edges

    readonly property int thickness: 5
    readonly property int corner: 12
    readonly property bool isLeft: root.edges & Qt.LeftEdge
    readonly property bool isRight: root.edges & Qt.RightEdge
    readonly property bool isTop: root.edges & Qt.TopEdge
    readonly property bool isBottom: root.edges & Qt.BottomEdge
    readonly property bool isCorner: (root.isLeft || root.isRight) && (root.isTop || root.isBottom)

    dragThreshold: 1
    onDragStarted: root.window.startSystemResize(root.edges)

    x: root.isRight ? parent.width - width : root.isLeft ? 0 : root.corner
    y: root.isBottom ? parent.height - height : root.isTop ? 0 : root.corner
    width: root.isCorner ? root.corner : root.isLeft || root.isRight ? root.thickness : parent.width - 2 * root.corner
    height: root.isCorner ? root.corner : root.isTop || root.isBottom ? root.thickness : parent.height - 2 * root.corner

    HoverHandler {
        cursorShape: root.isCorner ? (root.isLeft === root.isTop ? Qt.SizeFDiagCursor : Qt.SizeBDiagCursor)
                                   : root.isLeft || root.isRight ? Qt.SizeHorCursor : Qt.SizeVerCursor
    }
}
