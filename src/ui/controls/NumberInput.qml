import QtQuick

/// The bare text box inside a number field.
TextBox {
    id: root

    /// What assistive tools call it.
    required property string label
    required property string placeholder
    /// The field around it.
    required property Item frame

    signal steppedUp()
    signal steppedDown()

    /// Whether the focus came by a key; a pointer leaves no ring behind.
    readonly property bool hasKeyboardFocus: root.activeFocus && (root.focusReason === Qt.TabFocusReason
            || root.focusReason === Qt.BacktabFocusReason || root.focusReason === Qt.ShortcutFocusReason)

    implicitWidth: 40
    implicitHeight: root.contentHeight
    activeFocusOnTab: true
    font: Theme.font(15, Font.Medium)
    color: Theme.textPrimary
    selectionColor: Theme.accentBlueBorder
    selectedTextColor: Theme.textPrimary
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter
    inputMethodHints: Qt.ImhFormattedNumbersOnly

    onTextChanged: {
        // The end of a number that is too long for the field would read as another number.
        if (!root.isEdited)
            root.cursorPosition = 0;
    }
    onHasKeyboardFocusChanged: {
        // What was selected when the menu opened still is when it gives the focus back.
        if (root.hasKeyboardFocus && !root.openedMenu)
            root.selectAll();
    }
    Keys.onUpPressed: root.steppedUp()
    Keys.onDownPressed: root.steppedDown()

    Accessible.name: root.label

    BodyText {
        visible: root.text === "" && root.preeditText === ""
        anchors.fill: parent
        text: root.placeholder
        size: 15
        weight: Font.Medium
        color: Theme.textMuted
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        exposed: false
    }
}
