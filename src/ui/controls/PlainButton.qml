import QtQuick
import QtQuick.Templates as T
import Velloran

/// A button without a look of its own: what it shows is its `contentItem`, by default its label. Every other button is made
/// of it. It answers to the pointer, to Space and Return, and to assistive tools.
T.AbstractButton {
    id: root

    /// What the button is called. Shown letter for letter: an ampersand is an ampersand.
    required property string label
    /// Shown while the pointer rests on the button.
    property string help: ""
    /// Whether the pointer rests on the button. A disabled one does not know by itself.
    property bool isPointedAt: root.hovered
    property real size: 13
    property int weight: Font.DemiBold
    property color color: Theme.textPrimary
    /// Corner radius of what the focus ring goes around.
    property real faceRadius: Theme.radius.button
    /// Whether it shows in a way of its own that the pointer is on it.
    property bool hasPointerLook: false
    /// How far what answers the pointer goes beyond the button: bare text needs some air.
    property real air: root.background ? 0 : 4

    /// The button was pressed by whatever means.
    signal triggered()
    /// A pointer went down on the button. `ignorePress()` called from here keeps it from triggering.
    signal pointerPressed()

    /// Whether the press under way comes from a pointer, and from no key and no assistive tool.
    property bool isPointerPress: false

    property bool ignoresPress: false

    function ignorePress() {
        root.ignoresPress = true;
    }

    /// A press that comes from no pointer. Assistive tools may send one to a disabled button as well.
    function activate() {
        if (root.enabled)
            root.clicked();
    }

    function pressKey(isRepeated: bool) {
        if (!isRepeated)
            root.activate();
    }

    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitWidth: root.implicitContentWidth + root.leftPadding + root.rightPadding
    implicitHeight: root.implicitContentHeight + root.topPadding + root.bottomPadding

    onClicked: {
        if (!root.ignoresPress)
            root.triggered();
        root.ignoresPress = false;
        root.isPointerPress = false;
    }
    onCanceled: {
        root.ignoresPress = false;
        root.isPointerPress = false;
    }
    Keys.onReturnPressed: event => root.pressKey(event.isAutoRepeat)
    Keys.onEnterPressed: event => root.pressKey(event.isAutoRepeat)

    Accessible.name: root.label
    Accessible.description: root.help
    Accessible.focusable: root.focusPolicy !== Qt.NoFocus
    Accessible.onPressAction: root.activate()

    contentItem: BodyText {
        text: root.label
        size: root.size
        weight: root.weight
        color: root.color
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        exposed: false
    }

    // On an item of its own: a handler makes its parent take every mouse button, and a right click is no press.
    Item {
        anchors.fill: parent

        PointHandler {
            onActiveChanged: {
                if (active) {
                    root.ignoresPress = false;
                    root.isPointerPress = true;
                    root.pointerPressed();
                }
            }
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
                around: root.faceRadius
                // Bare text needs some air.
                gap: root.background ? 2 : 4
            }

            PointerVeil {
                anchors.margins: -root.air
                radius: root.faceRadius
                hovered: answers.isReady && root.hovered && root.enabled && !root.hasPointerLook
                pressed: answers.isReady && root.down && !root.hasPointerLook
            }

            // While held down, every plain button steps back a little.
            Binding {
                target: root.contentItem
                property: "opacity"
                value: root.down ? Theme.pressedOpacity : 1
            }
        }
    }

    OnDemand {
        wanted: root.help !== "" && root.isPointedAt

        HelpTip {
            help: root.help
            shown: root.isPointedAt && !root.down
        }
    }
}
