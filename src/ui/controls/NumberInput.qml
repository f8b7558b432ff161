import QtQuick

/// The bare text box inside a number field.
TextBox {
    id: root

    /// The field around it.
    required property Item frame

    signal steppedUp()
    signal steppedDown()

    implicitWidth: 40
    implicitHeight: root.contentHeight
    activeFocusOnTab: true
    size: 15
    weight: Font.Medium
    selectionColor: Theme.accentBlueBorder
    horizontalAlignment: TextInput.AlignLeft
    inputMethodHints: Qt.ImhFormattedNumbersOnly

    onTextChanged: {
        // The end of a number that is too long for the field would read as another number.
        if (!root.isEdited)
            root.cursorPosition = 0;
    }
    onVisualFocusChanged: {
        // What was selected when the menu opened still is when it gives the focus back.
        if (root.visualFocus && !root.openedMenu)
            root.selectAll();
    }
    Keys.onUpPressed: root.steppedUp()
    Keys.onDownPressed: root.steppedDown()
}
