import QtQuick

/// Shows the options of a window.
Sheet {
    id: root

    required property ShellWindow shell

    shown: root.shell.isOptionsShown
    title: "Presets and Options"
    content: root.shell.options
    onClosedByUser: root.shell.isOptionsShown = false
}
