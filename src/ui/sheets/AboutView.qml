import QtQuick
import Velloran

/// What the program is, what works how on this desktop and what does not, and what to do about that.
Item {
    id: root

    /// How each thing works on this desktop, or why it does not, in sentences; none hides the section.
    required property list<string> limits
    /// What can be done without a hotkey, and the line that it takes; no line hides both.
    property string hotkeyAdvice: ""
    property string hotkeyLine: ""

    signal done

    readonly property int padding: 24

    implicitWidth: 420
    implicitHeight: column.implicitHeight + 2 * root.padding

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.spacing.md

        Row {
            width: parent.width
            spacing: 14

            Picture {
                id: picture

                name: "DragonIdle"
                width: 64
                height: 64
            }

            Column {
                anchors.verticalCenter: picture.verticalCenter
                width: parent.width - picture.width - parent.spacing
                spacing: 4

                BodyText {
                    text: "Velloran"
                    size: 19
                    weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }

                BodyText {
                    text: "Version " + Qt.application.version
                    color: Theme.textSecondary
                }
            }
        }

        BodyText {
            width: parent.width
            text: "An exact, light and safe auto-clicker for your desktop."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }

        Column {
            width: parent.width
            visible: root.limits.length > 0
            spacing: 6

            BodyText {
                text: "This desktop"
                weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }

            Repeater {
                model: root.limits

                BodyText {
                    required property string modelData

                    width: parent.width
                    text: modelData
                    size: 12.5
                    color: Theme.textSecondary
                    wrapMode: Text.Wrap
                }
            }
        }

        Column {
            width: parent.width
            visible: root.hotkeyLine !== ""
            spacing: 6

            BodyText {
                width: parent.width
                text: root.hotkeyAdvice
                size: 12.5
                color: Theme.textSecondary
                wrapMode: Text.Wrap
            }

            Item {
                width: parent.width
                height: copyButton.implicitHeight

                TextBox {
                    id: lineBox

                    anchors.left: parent.left
                    anchors.right: copyButton.left
                    anchors.rightMargin: Theme.spacing.md
                    anchors.top: parent.top
                    anchors.bottom: parent.bottom
                    leftPadding: 10
                    rightPadding: 10
                    label: "Line for the hotkey"
                    placeholder: ""
                    size: 12
                    readOnly: true
                    // Some desktops take two.
                    text: root.hotkeyLine.replace("\n", " ↵ ")

                    // A field of one line would lose where the next begins.
                    function copySelection() {
                        clipboard.text = lineBox.selectedText.replace(/ ?↵ ?/g, "\n");
                        clipboard.selectAll();
                        clipboard.copy();
                    }

                    // Its beginning tells more than its end.
                    onTextChanged: lineBox.cursorPosition = 0

                    background: RoundedFace {
                        radius: copyButton.faceRadius
                        fill: Theme.fieldFill
                        stroke: Theme.fieldStroke
                    }
                }

                FaceButton {
                    id: copyButton

                    anchors.right: parent.right
                    label: "Copy"
                    onTriggered: {
                        lineBox.selectAll();
                        lineBox.copySelection();
                    }
                }

                TextEdit {
                    id: clipboard

                    visible: false
                }
            }
        }

        FaceButton {
            anchors.right: parent.right
            label: "Close"
            onTriggered: root.done()
        }
    }
}
