import QtQuick
import QtQuick.Templates as T
import Velloran

/// A pull-down menu in the look of the program. It holds `PopupMenuItem`, `MenuSection`, `MenuDivider` and further menus.
///
/// While it is open everything below it rests: a press beside it only closes it.
T.Menu {
    id: root

    /// The menu is at least this wide.
    property real leastWidth: 0
    /// The entry that is selected when the menu opens; -1 for none. Opened by a key, a menu always selects one.
    property int chosenIndex: -1
    /// Whether the menu ends where what it opens beside does, instead of beginning there.
    property bool endsRight: false

    /// Between the menu and the button that opens it.
    readonly property real gap: 4

    readonly property bool isSubmenu: root.parent instanceof T.MenuItem

    // The size that all entries want; the list itself guesses.
    readonly property size wanted: {
        let width = 0;
        let height = 0;
        for (let i = 0; i < root.count; ++i) {
            const entry = root.itemAt(i);
            width = Math.max(width, entry.implicitWidth);
            height += entry.implicitHeight;
        }
        return Qt.size(width, height + root.topPadding + root.bottomPadding);
    }

    // How tall the menu can be where it opens.
    property real room: Infinity

    // Who had the focus before, and whether by a key.
    property Item focusBefore: null
    property bool hadKeyboard: false
    property bool isByKey: false

    /// Whether resting on an entry selects it. A menu opened by a key waits for the pointer to be moved.
    property bool heedsPointer: true
    property var pointerPlace: null

    /// Opens below the menu's parent, or above it where there is more room; never over it. Closes the menu when it is open.
    function toggle(byKey: bool) {
        if (root.opened)
            root.close();
        else
            root.openBeside(Qt.rect(0, -root.gap, root.parent.width, root.parent.height + 2 * root.gap), byKey);
    }

    /// Opens at a place of the menu's parent, beside the pointer that is there.
    function openAt(place: point) {
        root.openBeside(Qt.rect(place.x, place.y, 1, 1), false);
    }

    /// Opens right below an area of the menu's parent, or right above it.
    function openBeside(area: rect, byKey: bool) {
        const inWindow = root.parent.mapToItem(null, area);
        const below = root.parent.Window.height - root.bottomMargin - inWindow.bottom;
        const above = inWindow.top - root.topMargin;
        const goesDown = root.wanted.height <= below || below >= above;
        root.room = goesDown ? below : above;
        root.x = root.endsRight ? area.right - root.implicitWidth : area.left;
        root.y = goesDown ? area.bottom : area.top - root.implicitHeight;
        root.isByKey = byKey;
        root.heedsPointer = !byKey;
        root.pointerPlace = null;
        root.open();
    }

    /// Selects the nearest entry that can be chosen and, if a letter is given, begins with it: from `start` on in that
    /// direction and around the ends. Returns whether there is one.
    function select(start: int, direction: int, letter: string): bool {
        for (let i = 0; i < root.count; ++i) {
            const index = (start + direction * i + 2 * root.count) % root.count;
            const entry = root.itemAt(index) as PopupMenuItem;
            if (entry?.enabled && (letter === "" || entry.letter === letter)) {
                root.currentIndex = index;
                // By a key: who looks for the keyboard finds it here.
                entry.focusReason = Qt.TabFocusReason;
                return true;
            }
        }
        return false;
    }

    function takeKey(event: KeyEvent): bool {
        switch (event.key) {
        case Qt.Key_Down:
            return root.select(root.currentIndex + 1, 1, "");
        case Qt.Key_Up:
            return root.select(root.currentIndex < 0 ? -1 : root.currentIndex - 1, -1, "");
        case Qt.Key_Home:
            return root.select(0, 1, "");
        case Qt.Key_End:
            return root.select(-1, -1, "");
        }
        const isTyped = event.text.trim() !== "" && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier));
        return isTyped && root.select(root.currentIndex + 1, 1, event.text.toLowerCase());
    }

    function rememberFocus() {
        root.focusBefore = root.parent.Window.activeFocusItem;
        root.hadKeyboard = root.isByKey || ((root.focusBefore as T.Control)?.visualFocus
                ?? (root.focusBefore as TextBox)?.visualFocus ?? false);
    }

    // Unless what was chosen has given the focus to somebody else. A submenu's focus is its parent's business.
    function giveFocusBack() {
        const before = root.focusBefore;
        const now = root.parent.Window.activeFocusItem;
        root.focusBefore = null;
        if (!before || root.isSubmenu || (now !== before && now !== root.parent.Window.contentItem))
            return;
        before.forceActiveFocus(root.hadKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason);
        // The toolkit may have given it back already, for a reason of its own.
        if (root.hadKeyboard && before instanceof T.Control)
            (before as T.Control).focusReason = Qt.TabFocusReason;
        else if (root.hadKeyboard && before instanceof TextBox)
            (before as TextBox).focusReason = Qt.TabFocusReason;
    }

    onAboutToShow: {
        root.rememberFocus();
        if (root.isSubmenu) {
            root.heedsPointer = ((root.parent as T.MenuItem).menu as PopupMenu).heedsPointer;
            root.pointerPlace = null;
        }
        if (root.chosenIndex >= 0)
            root.currentIndex = root.chosenIndex;
    }
    onOpened: {
        if (root.isByKey && root.currentIndex < 0)
            root.select(0, 1, "");
    }
    onClosed: {
        root.giveFocusBack();
        root.isByKey = false;
    }

    modal: !root.isSubmenu
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    margins: 8
    padding: 5
    overlap: 2
    implicitWidth: Math.max(root.leastWidth, Math.min(root.wanted.width, Theme.scaled(340)) + root.leftPadding + root.rightPadding)
    implicitHeight: Math.min(root.wanted.height, root.room)

    delegate: PopupMenuItem {
        label: subMenu ? subMenu.title : ""
    }

    contentItem: ListView {
        focus: true
        model: root.contentModel
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        currentIndex: root.currentIndex
        // Where the keys go, the list is at once.
        highlightMoveDuration: 0
        Keys.onPressed: event => event.accepted = root.takeKey(event)

        HoverHandler {
            onPointChanged: {
                if (!root.pointerPlace)
                    root.pointerPlace = point.scenePosition;
                else if (point.scenePosition !== root.pointerPlace)
                    root.heedsPointer = true;
            }
        }
    }

    background: RoundedFace {
        radius: Theme.radius.field
        fill: Theme.cardFillHover
        stroke: Theme.cardStrokeStrong

        SoftShadow {
            z: -1
            radius: Theme.radius.field
            blur: 18
            offsetY: 8
            color: Theme.black(0.45)
        }
    }

    // It is there at once: the keyboard is its own only when it has come in.
    exit: Transition {
        EaseInOut { property: "opacity"; from: 1; to: 0; seconds: 0.1 }
    }
}
