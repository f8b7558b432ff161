import QtQuick
import QtQuick.Templates as T
import Velloran

/// One line of text to edit. A right click, the menu key and Shift+F10 open its menu.
T.TextField {
    id: root

    /// What assistive tools call it.
    required property string label
    /// Stands in the field while it is empty.
    required property string placeholder
    property real size: 13
    property int weight: Font.Normal
    /// How far around the text a right click is still one on it: the room that a frame leaves.
    property real reach: 0
    /// Whether the text is being edited: by the keyboard, or by its menu, which has the keyboard meanwhile.
    readonly property bool isEdited: root.activeFocus || root.openedMenu !== null

    /// Whether the focus came by a key, as other controls tell it; a pointer leaves no ring behind.
    readonly property bool visualFocus: root.activeFocus && (root.focusReason === Qt.TabFocusReason
            || root.focusReason === Qt.BacktabFocusReason || root.focusReason === Qt.ShortcutFocusReason)

    /// The menu, while it is open. Its type is not read before that.
    property var openedMenu: null

    function makeMenu(): var {
        root.openedMenu = Qt.createComponent("EditMenu.qml").createObject(root, { field: root });
        return root.openedMenu;
    }

    /// Puts what is selected onto the clipboard, for the keys and for the menu.
    function copySelection() {
        root.copy();
    }

    font: Theme.font(root.size, root.weight)
    color: Theme.textPrimary
    selectedTextColor: Theme.textPrimary
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    // The menu acts on what is selected.
    persistentSelection: root.openedMenu !== null

    Accessible.name: root.label

    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) {
            root.copySelection();
            event.accepted = true;
            return;
        }
        event.accepted = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
        if (event.accepted)
            root.makeMenu().openBeside(Qt.rect(root.cursorRectangle.x, 0, root.cursorRectangle.width, root.height), true);
    }

    OnDemand {
        wanted: root.length === 0 && root.placeholder !== ""

        BodyText {
            anchors.fill: parent
            anchors.leftMargin: root.leftPadding
            anchors.rightMargin: root.rightPadding
            visible: root.length === 0 && root.preeditText === ""
            text: root.placeholder
            size: root.size
            weight: root.weight
            color: Theme.textMuted
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            exposed: false
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        margin: root.reach
        gesturePolicy: TapHandler.DragThreshold
        onTapped: point => {
            if (!root.activeFocus)
                root.forceActiveFocus(Qt.MouseFocusReason);
            root.makeMenu().openAt(point.position);
        }
    }
}
