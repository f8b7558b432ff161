import QtQuick
import QtQuick.Layouts

/// A line of explanation under a control. Wraps instead of being cut.
BodyText {
    id: root

    /// How far it is moved in, so that it starts where the control above does.
    property real indent: 0

    Layout.fillWidth: true
    Layout.leftMargin: root.indent
    size: 12
    color: Theme.textMuted
    wrapMode: Text.WordWrap
}
