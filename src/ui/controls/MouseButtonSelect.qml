import QtQuick

/// The chooser of the mouse button: a face with the current choice, and a menu of all.
FocusScope {
    id: root

    /// What the chooser is called: the label of its row.
    property string label: ""
    /// The names in the order of the choices: left, right, middle.
    required property list<string> names
    required property int selection

    signal selected(int index)

    readonly property list<string> icons: ["computermouse", "computermouse.fill", "dot.circle"]

    implicitWidth: face.implicitWidth
    implicitHeight: face.implicitHeight

    PlainButton {
        id: face

        anchors.fill: parent
        focus: true
        label: root.names[root.selection]
        leftPadding: 12
        rightPadding: 12
        topPadding: 9
        bottomPadding: 9
        faceRadius: Theme.radius.field
        onTriggered: menu.visible ? menu.close() : menu.open()
        Keys.onDownPressed: menu.open()
        Keys.onUpPressed: menu.open()

        Accessible.role: Accessible.ButtonMenu
        Accessible.description: root.label

        background: RoundedFace {
            radius: Theme.radius.field
            fill: Theme.fieldFill
            stroke: Theme.fieldStroke
        }

        contentItem: Item {
            id: content

            implicitWidth: symbol.width + 8 + name.implicitWidth + 8 + 4 + 8 + chevron.width
            implicitHeight: Math.max(symbol.height, name.implicitHeight)

            Icon {
                id: symbol

                anchors.verticalCenter: parent.verticalCenter
                name: root.icons[root.selection]
                pointSize: 13
                color: Theme.textSecondary
            }

            BodyText {
                id: name

                anchors {
                    left: symbol.right
                    leftMargin: 8
                    right: chevron.left
                    rightMargin: 20
                    verticalCenter: parent.verticalCenter
                }
                text: face.label
                size: 14
                weight: Font.Medium
                elide: Text.ElideRight
                exposed: false
            }

            Icon {
                id: chevron

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                name: "chevron.down"
                pointSize: 11
                color: Theme.textMuted
            }
        }
    }

    PopupMenu {
        id: menu

        y: root.height + 4
        leastWidth: root.width
        closePolicy: PopupMenu.CloseOnEscape | PopupMenu.CloseOnPressOutsideParent
        onOpened: menu.currentIndex = root.selection

        Repeater {
            model: root.names

            PopupMenuItem {
                required property int index
                required property string modelData

                label: modelData
                systemImage: root.icons[index]
                onTriggered: root.selected(index)
            }
        }
    }
}
