import QtQuick
import Velloran

/// One half of a segmented toggle.
ChoiceButton {
    id: root

    leftPadding: Theme.spacing.sm
    rightPadding: Theme.spacing.sm
    topPadding: Theme.spacing.xs
    bottomPadding: Theme.spacing.xs
    implicitHeight: Math.max(38, root.implicitContentHeight + root.topPadding + root.bottomPadding)

    contentItem: BodyText {
        text: root.label
        size: 14
        weight: Font.DemiBold
        color: root.isSelected ? Theme.accentBlue : Theme.textSecondary
        wrapMode: Text.WordWrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        exposed: false

        Behavior on color {
            ColorEase { seconds: 0.18 }
        }
    }

    background: RoundedFace {
        radius: Theme.radius.button
        fill: root.isSelected ? Theme.accentBlueSoft : Theme.fieldFill
        stroke: root.isSelected ? Theme.accentBlueBorder : Theme.fieldStroke

        Behavior on fill {
            ColorEase { seconds: 0.18 }
        }
        Behavior on stroke {
            ColorEase { seconds: 0.18 }
        }
    }

    OnDemand {
        wanted: root.hovered || root.down || root.visualFocus

        Item {
            id: answers

            // What comes into being under the pointer fades in all the same.
            property bool isReady: false

            anchors.fill: parent
            z: 1
            Component.onCompleted: answers.isReady = true

            FocusRing {
                shown: root.visualFocus
                around: Theme.radius.button
            }

            PointerVeil {
                radius: Theme.radius.button
                hovered: answers.isReady && root.hovered
                pressed: answers.isReady && root.down
            }
        }
    }
}
