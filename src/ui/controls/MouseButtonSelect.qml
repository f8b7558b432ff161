import QtQuick
import Velloran

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

    function toggleMenu(byKey: bool) {
        menu.get({ chooser: root }).toggle(byKey);
    }

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
        onTriggered: root.toggleMenu(!face.isPointerPress)
        Keys.onDownPressed: root.toggleMenu(true)
        Keys.onUpPressed: root.toggleMenu(true)

        Accessible.description: root.label

        background: RoundedFace {
            radius: Theme.radius.field
            fill: Theme.fieldFill
            stroke: Theme.fieldStroke
        }

        contentItem: SelectFace {
            icon: root.icons[root.selection]
            name: face.label
        }
    }

    OnDemand {
        id: menu

        source: "MouseButtonMenu.qml"
    }
}
