import QtQuick

/// Keeps what has the keyboard focus in sight: a view scrolls just as far as it must when the focus moves out of it. What a
/// pointer gives the focus is in sight where it was pressed, and stays there: it would miss the release, or the next press.
QtObject {
    id: root

    required property Flickable view
    /// Whether a pointer is down on the view.
    required property bool isHeld

    /// The item with the focus, if the view holds it.
    readonly property Item focused: root.view.Window.activeFocusItem

    onFocusedChanged: {
        if (root.isHeld)
            return;
        for (let item = root.focused; item; item = item.parent) {
            if (item === root.view.contentItem) {
                root.reveal();
                return;
            }
        }
    }

    function reveal() {
        const margin = Theme.spacing.sm;
        // A number field is more than the text in it.
        const shown = (root.focused as NumberInput)?.frame ?? root.focused;
        const top = shown.mapToItem(root.view.contentItem, 0, 0).y - margin;
        const bottom = top + shown.height + 2 * margin;
        if (top < root.view.contentY)
            root.view.contentY = Math.max(0, top);
        else if (bottom > root.view.contentY + root.view.height)
            root.view.contentY = Math.min(bottom - root.view.height, root.view.contentHeight - root.view.height);
    }
}
