import QtQuick

/// Shows what the program is.
Sheet {
    id: root

    required property ShellWindow shell

    shown: root.shell.isAboutShown
    title: "About Velloran"
    onClosedByUser: root.shell.isAboutShown = false

    AboutView {
        limits: root.shell.limits
        hotkeyAdvice: root.shell.hotkeyAdvice
        hotkeyLine: root.shell.hotkeyLine
        onDone: root.shell.isAboutShown = false
    }
}
