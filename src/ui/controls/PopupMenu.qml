import QtQuick
import QtQuick.Templates as T
import Velloran

/// A pull-down menu in the look of the program. It holds `PopupMenuItem`, `MenuSection`, `MenuDivider` and further menus; what
/// is made from a list comes in through an `Instantiator` with `insertItem` and `removeItem`.
T.Menu {
    id: root

    /// The menu is at least this wide.
    property real leastWidth: 0

    // The widest entry; the list itself reports none.
    readonly property real widest: {
        let width = 0;
        for (let i = 0; i < root.count; ++i)
            width = Math.max(width, root.itemAt(i).implicitWidth);
        return width;
    }

    // Who had the focus before, and whether by a key.
    property Item focusBefore: null
    property bool hadKeyboard: false

    function rememberFocus() {
        root.focusBefore = root.parent.Window.activeFocusItem;
        root.hadKeyboard = (root.focusBefore as T.Control)?.visualFocus ?? false;
    }

    // Unless what was chosen has given the focus to somebody else. A submenu's focus is its parent's business.
    function giveFocusBack() {
        const isFree = root.parent.Window.activeFocusItem === root.parent.Window.contentItem;
        if (root.focusBefore && isFree && !(root.focusBefore instanceof T.MenuItem))
            root.focusBefore.forceActiveFocus(root.hadKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason);
        root.focusBefore = null;
    }

    onAboutToShow: root.rememberFocus()
    onClosed: root.giveFocusBack()

    margins: 8
    padding: 5
    overlap: 2
    implicitWidth: Math.max(root.leastWidth, Math.min(root.widest, Theme.scaled(340)) + root.leftPadding + root.rightPadding)
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding

    delegate: PopupMenuItem {
        label: subMenu ? subMenu.title : ""
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        currentIndex: root.currentIndex
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
