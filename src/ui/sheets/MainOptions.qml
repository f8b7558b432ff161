import QtQuick

/// The options of the main window.
OptionsView {
    id: root

    required property MainWindow window

    config: root.window.config
    presets: root.window.presets
    files: root.window.files
    onDone: root.window.isOptionsShown = false
}
