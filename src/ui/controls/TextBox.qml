import QtQuick
import QtQuick.Templates as T

/// One line of text to edit. A right click, the menu key and Shift+F10 open its menu.
T.TextField {
    id: root

    /// How far around the text a right click is still one on it: the room that a frame leaves.
    property real reach: 0
    /// Whether the text is being edited: by the keyboard, or by its menu, which has the keyboard meanwhile.
    readonly property bool isEdited: root.activeFocus || root.openedMenu !== null

    property EditMenu openedMenu: null
    // Why the field has the focus when the menu has given it back.
    property int reasonAfter: Qt.OtherFocusReason

    function makeMenu(byKey: bool): EditMenu {
        root.reasonAfter = byKey ? Qt.ShortcutFocusReason : root.focusReason;
        root.openedMenu = editMenu.createObject(root) as EditMenu;
        return root.openedMenu;
    }

    selectByMouse: true
    // The menu acts on what is selected.
    persistentSelection: root.openedMenu !== null

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
        if (event.accepted)
            root.makeMenu(true).openBeside(Qt.rect(root.cursorRectangle.x, 0, root.cursorRectangle.width, root.height), true);
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        margin: root.reach
        gesturePolicy: TapHandler.DragThreshold
        onTapped: point => {
            if (!root.activeFocus)
                root.forceActiveFocus(Qt.MouseFocusReason);
            root.makeMenu(false).openAt(point.position);
        }
    }

    Component {
        id: editMenu

        EditMenu {
            id: menu

            field: root
            // By now the focus is back, so that at no moment the field seems to be left.
            onClosed: {
                // Unless a newer one is open.
                if (root.openedMenu === menu) {
                    if (root.activeFocus)
                        root.focusReason = root.reasonAfter;
                    root.openedMenu = null;
                }
                menu.destroy();
            }
        }
    }
}
