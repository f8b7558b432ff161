import QtQuick
import QtQuick.Templates as T
import Velloran

/// The one window of the program: it draws its own frame and shows its sheets over whatever it holds. Closing it ends the
/// program.
T.ApplicationWindow {
    id: root

    /// What the window holds.
    default property alias page: page.data
    /// The least size of what it holds, unless the screen is smaller.
    property size leastSize: Qt.size(920, 736)
    /// How tall the window starts, if the screen has the room. What it is later changes nothing.
    property real startHeight: 0
    /// What the options sheet holds.
    property Component options: null
    /// How each thing works on this desktop, or why it does not, in sentences.
    property list<string> limits: []
    /// What can be done without a hotkey, and the line that it takes.
    property string hotkeyAdvice: ""
    property string hotkeyLine: ""

    required property DesktopWindowButtons windowButtons
    /// The window manager's menu for this window, if it has one.
    property WindowManagerMenu managerMenu: null

    /// Whether the desktop keeps the window from getting smaller than its least size, and makes it smaller all the same where it
    /// has reason to: in tiles.
    property bool isKeptByDesktop: false
    /// The least size that can be had on this screen.
    readonly property size least: Qt.size(Math.min(root.leastSize.width, workArea.size.width),
                                          Math.min(root.leastSize.height, workArea.size.height))

    /// The start height is about to be read.
    signal aboutToShow

    /// Whether any sheet or dialog is open.
    readonly property bool isSheetOpen: SheetStack.isOccupied
    /// What the window buttons take of the left end of the title bar.
    readonly property real leftInset: frame.leftInset

    property bool isOptionsShown: false
    property bool isAboutShown: false

    function showOptions() {
        root.isOptionsShown = true;
    }

    function showAbout() {
        root.isAboutShown = true;
    }

    // Shown when its size is known.
    visible: false
    // None of its own: the program's, which the window system shows anyway, and without this assistive tools do not tell.
    title: "Velloran"
    minimumWidth: root.isKeptByDesktop ? 0 : root.least.width
    minimumHeight: root.isKeptByDesktop ? 0 : root.least.height
    flags: Qt.Window | Qt.FramelessWindowHint
    color: Theme.appBackgroundBot

    Component.onCompleted: {
        root.aboutToShow();
        root.width = root.least.width;
        root.height = Math.max(root.least.height, Math.min(root.startHeight, workArea.size.height));
        root.visible = true;
    }
    onClosing: Qt.quit()

    WorkArea {
        id: workArea

        window: root
    }

    PointSizeKeeper {
        window: root
    }

    Shortcut {
        sequence: "Ctrl+,"
        enabled: !root.isSheetOpen
        onActivated: root.showOptions()
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }

    FocusScope {
        id: page

        anchors.fill: parent
    }

    WindowFrame {
        id: frame

        anchors.fill: parent
        z: 100
        window: root
        titleHeight: 64
        isMenuEnabled: !root.isSheetOpen
        buttons: root.windowButtons
        managerMenu: root.managerMenu
        onOptionsRequested: root.showOptions()
        onAboutRequested: root.showAbout()
        onQuitRequested: Qt.quit()
    }

    OnDemand {
        wanted: root.isOptionsShown
        source: "OptionsSheet.qml"
        properties: ({ shell: root })
    }

    OnDemand {
        wanted: root.isAboutShown
        source: "AboutSheet.qml"
        properties: ({ shell: root })
    }
}
