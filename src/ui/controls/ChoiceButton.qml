import QtQuick
import QtQuick.Templates as T

/// One of several choices, without a look of its own. It reports every press, also while it is selected; whoever placed it
/// decides what is selected.
T.RadioButton {
    id: root

    required property string label
    required property bool isSelected

    signal triggered()

    /// A press that comes from no pointer.
    function activate() {
        root.clicked();
    }

    function pressKey(isRepeated: bool) {
        if (!isRepeated)
            root.activate();
    }

    checked: root.isSelected
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitWidth: root.implicitContentWidth + root.leftPadding + root.rightPadding
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding

    onClicked: root.triggered()
    Keys.onReturnPressed: event => root.pressKey(event.isAutoRepeat)
    Keys.onEnterPressed: event => root.pressKey(event.isAutoRepeat)

    Accessible.name: root.label
    Accessible.focusable: true
    Accessible.onPressAction: root.activate()
    Accessible.onToggleAction: root.activate()

    Binding {
        target: root.contentItem
        property: "opacity"
        value: root.down ? Theme.pressedOpacity : 1
    }
}
