import QtQuick
import QtQuick.Templates as T
import Velloran

/// A panel over the whole window that keeps everything below it from being used. What it holds is made anew for every showing.
///
/// The toolkit's modal popup would spare eighty lines, and was tried. It lies over the window's frame and takes every press beside
/// it, so that the window could be neither moved nor closed below a sheet. Lifted into the layer of the popups, the frame gets no
/// press either, comes before the content in the order of the Tab key and covers the menus.
FocusScope {
    id: root

    /// Whether the sheet is to be shown. Only its owner changes this.
    required property bool shown
    /// What assistive tools call it.
    property string title: ""
    /// Whether it lets sheets and dialogs that are open finish first.
    property bool waitsForOthers: false
    default property Component content

    readonly property int level: {
        SheetStack.top;
        return SheetStack.levelOf(root);
    }
    readonly property bool isOpen: root.level >= 0
    /// What is shown at the moment; null while the sheet is away.
    readonly property Item shownContent: loader.item as Item

    /// The user wants it closed. The owner answers by clearing `shown`.
    signal closedByUser

    property bool isReady: false

    // The lowest one darkens the window, every other one what it covers of the sheet below: nothing gets dark twice. Kept while
    // the sheet fades out.
    property bool isLowest: true
    readonly property bool isCovered: root.isOpen && SheetStack.top !== root

    // Where the focus was before.
    property Item focusBefore: null
    property bool hadVisualFocus: false

    readonly property int margin: 24
    // The strip at the top of the window stays free for moving it.
    readonly property int topMargin: Math.min(72, Math.max(root.margin, root.height - panel.height - root.margin))

    function rememberFocus() {
        const siblings = root.parent.children;
        for (let i = 0; i < siblings.length; ++i) {
            if (siblings[i] !== root && siblings[i].focus)
                root.focusBefore = siblings[i];
        }
        const focused = T.ApplicationWindow.activeFocusControl;
        root.hadVisualFocus = (focused as T.Control)?.visualFocus ?? (focused as TextBox)?.visualFocus ?? false;
    }

    function restoreFocus() {
        const before = root.focusBefore;
        root.focusBefore = null;
        if (!root.focus)
            return;
        root.focus = false;
        if (before)
            before.forceActiveFocus(root.hadVisualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    function update() {
        if (!root.shown) {
            SheetStack.hide(root);
            return;
        }
        // Wherever it was written down, a sheet covers the window.
        root.parent = T.ApplicationWindow.contentItem;
        SheetStack.show(root, root.waitsForOthers);
    }

    anchors.fill: parent
    z: 10 + Math.max(0, root.level)
    // From the first moment on: what cannot be seen cannot have the focus.
    visible: root.isOpen || root.opacity > 0
    opacity: root.isOpen ? 1 : 0

    Component.onCompleted: {
        root.isReady = true;
        root.update();
    }
    onShownChanged: {
        // Before that there is no window yet that could give it the focus.
        if (root.isReady)
            root.update();
    }
    onLevelChanged: {
        if (root.level >= 0)
            root.isLowest = root.level === 0;
    }
    onIsOpenChanged: {
        if (root.isOpen) {
            loader.sourceComponent = null;
            loader.sourceComponent = root.content;
            root.rememberFocus();
            root.forceActiveFocus(Qt.PopupFocusReason);
        } else {
            root.restoreFocus();
        }
    }
    onVisibleChanged: {
        if (!visible)
            loader.sourceComponent = null;
        else if (root.isOpen)
            root.forceActiveFocus(Qt.PopupFocusReason);
    }

    Keys.onEscapePressed: root.closedByUser()
    // While no control has the focus, the guards lead into the ring of controls from its ends.
    Keys.onTabPressed: last.forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: first.forceActiveFocus(Qt.BacktabFocusReason)

    Behavior on opacity {
        EaseInOut { seconds: 0.15 }
    }

    Rectangle {
        anchors.fill: parent
        color: root.isLowest ? Theme.sheetShade : "transparent"

        // A shade that only fades out any more keeps nobody from going on.
        MouseArea {
            anchors.fill: parent
            enabled: root.isOpen
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }
    }

    FocusGuard {
        id: first

        sendsToFirst: false
        opposite: last
    }

    RoundedFace {
        id: panel

        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round(Math.max(root.topMargin, (root.height - height) / 2))
        width: Math.min(loader.implicitWidth, root.width - 2 * root.margin)
        height: Math.min(loader.implicitHeight, root.height - 2 * root.margin)
        visible: loader.implicitHeight > 0
        radius: Theme.radius.card
        fill: Theme.appBackground
        stroke: Theme.cardStrokeStrong

        Accessible.role: Accessible.Dialog
        Accessible.name: root.title

        SoftShadow {
            z: -1
            radius: Theme.radius.card
            blur: 36
            offsetY: 16
            color: Theme.black(0.5)
        }

        // A press beside the controls is no press on what lies below.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }

        ScrollArea {
            id: area

            anchors.fill: parent
            contentHeight: loader.implicitHeight

            Loader {
                id: loader

                focus: true
                width: area.width
                height: Math.max(implicitHeight, area.height)
            }
        }

        RoundedFace {
            anchors.fill: parent
            radius: panel.radius
            fill: Theme.sheetShade
            visible: opacity > 0
            opacity: root.isCovered ? 1 : 0

            Behavior on opacity {
                EaseInOut { seconds: 0.15 }
            }
        }
    }

    FocusGuard {
        id: last

        sendsToFirst: true
        opposite: first
    }
}
