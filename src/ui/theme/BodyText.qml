import QtQuick

/// Text in the program's own type, shown letter for letter: names that people chose are never read as markup.
Text {
    id: root

    /// Size in points and weight; `font` itself follows from them.
    property real size: 13
    property int weight: Font.Normal
    /// Whether assistive tools find this text by itself. Text that only repeats the name of the control around it is not.
    property bool exposed: true

    textFormat: Text.PlainText
    color: Theme.textPrimary
    font: Theme.font(root.size, root.weight)

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
    Accessible.ignored: !root.exposed
}
