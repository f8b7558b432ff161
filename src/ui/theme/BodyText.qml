import QtQuick

/// Text in the program's own type, shown letter for letter: names that people chose are never read as markup.
Item {
    id: root

    property alias text: label.text
    property alias color: label.color
    property alias elide: label.elide
    property alias wrapMode: label.wrapMode
    property alias horizontalAlignment: label.horizontalAlignment
    property alias verticalAlignment: label.verticalAlignment
    readonly property alias truncated: label.truncated
    /// Follows from size and weight.
    readonly property alias font: label.font

    /// In points, whole or half ones.
    property real size: 13
    property int weight: Font.Normal
    /// Whether assistive tools find this text by itself. Text that only repeats the name of the control around it is not.
    property bool exposed: true

    // Type comes in whole pixels only: half sizes are set twice as large and drawn at half.
    readonly property real shrink: Theme.scaled(root.size) % 1 === 0.5 ? 0.5 : 1

    implicitWidth: Math.ceil(label.implicitWidth * root.shrink)
    implicitHeight: Math.ceil(label.implicitHeight * root.shrink)
    baselineOffset: label.baselineOffset * root.shrink

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
    Accessible.ignored: !root.exposed

    Text {
        id: label

        width: root.width / root.shrink
        height: root.height / root.shrink
        scale: root.shrink
        transformOrigin: Item.TopLeft
        textFormat: Text.PlainText
        color: Theme.textPrimary
        font: Theme.font(root.size / root.shrink, root.weight)

        Accessible.ignored: true
    }
}
