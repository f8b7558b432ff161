import QtQuick
import QtQuick.Templates as T

/// Stands at one end of a group of controls. Whoever comes to it by the Tab key is sent on, so that the focus stays in the
/// group.
T.Control {
    id: root

    /// Where the focus goes on to: the first control of the group, or the last.
    required property bool sendsToFirst
    /// The guard at the other end.
    required property Item opposite

    focusPolicy: Qt.TabFocus
    Accessible.ignored: true

    onActiveFocusChanged: {
        if (!activeFocus)
            return;
        const target = root.opposite.nextItemInFocusChain(root.sendsToFirst);
        if (target !== root)
            target.forceActiveFocus(root.sendsToFirst ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }
}
