import QtQuick
import QtQuick.Templates as T
import Velloran

/// The hover help of its parent.
T.ToolTip {
    id: root

    required property string help
    /// Whether the pointer rests on the parent.
    required property bool shown

    visible: root.shown && root.help !== ""
    delay: 700
    x: Math.round((root.parent.width - root.width) / 2)
    y: root.parent.height + 6
    margins: 6
    leftPadding: 8
    rightPadding: 8
    topPadding: 5
    bottomPadding: 5
    // Sentences go on in further lines.
    implicitWidth: Math.min(320, root.implicitContentWidth + root.leftPadding + root.rightPadding)
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding
    closePolicy: T.Popup.CloseOnEscape

    contentItem: BodyText {
        text: root.help
        size: 12
        color: Theme.textSecondary
        wrapMode: Text.Wrap
    }

    background: RoundedFace {
        radius: 6
        fill: Theme.cardFillHover
        stroke: Theme.cardStrokeStrong
    }
}
