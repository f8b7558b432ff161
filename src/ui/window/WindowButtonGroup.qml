import QtQuick

/// The window buttons at one end of the title bar.
Row {
    id: root

    required property Window window
    /// "minimize", "maximize" and "close", from left to right.
    required property list<string> names

    readonly property bool isLarge: root.window.visibility === Window.Maximized || root.window.visibility === Window.FullScreen

    function press(name: string) {
        if (name === "minimize")
            root.window.showMinimized();
        else if (name === "close")
            root.window.close();
        else if (root.isLarge)
            root.window.showNormal();
        else
            root.window.showMaximized();
    }

    spacing: 4

    Repeater {
        model: root.names

        WindowButton {
            required property string modelData

            readonly property bool restores: modelData === "maximize" && root.isLarge

            label: ({ minimize: "Minimize", maximize: restores ? "Restore" : "Maximize", close: "Close" })[modelData]
            systemImage: "window." + (restores ? "restore" : modelData)
            onTriggered: root.press(modelData)
        }
    }
}
