pragma Singleton

import QtQuick

/// The one look of the program: sizes in points, colours, type and motion. A view takes every such value from here.
QtObject {
    id: theme

    component SpacingScale: QtObject {
        readonly property int xs: 6
        readonly property int sm: 10
        readonly property int md: 16
        readonly property int lg: 22
        readonly property int xl: 28
    }

    component RadiusScale: QtObject {
        readonly property int field: 10
        readonly property int card: 16
        readonly property int button: 12
    }

    readonly property SpacingScale spacing: SpacingScale {}
    readonly property RadiusScale radius: RadiusScale {}

    readonly property color appBackground: Qt.rgba(0.039, 0.063, 0.122, 1)
    readonly property color appBackgroundTop: Qt.rgba(0.047, 0.078, 0.149, 1)
    readonly property color appBackgroundBot: Qt.rgba(0.027, 0.047, 0.098, 1)
    readonly property color cardFill: Qt.rgba(0.067, 0.098, 0.176, 1)
    readonly property color cardFillHover: Qt.rgba(0.082, 0.118, 0.212, 1)
    readonly property color cardStroke: theme.white(theme.highContrast ? 0.5 : 0.06)
    readonly property color cardStrokeStrong: theme.white(theme.highContrast ? 0.65 : 0.1)
    readonly property color textPrimary: Qt.rgba(1, 1, 1, 1)
    readonly property color textSecondary: theme.highContrast ? Qt.rgba(0.9, 0.93, 0.98, 1) : Qt.rgba(0.64, 0.69, 0.78, 1)
    readonly property color textMuted: theme.highContrast ? Qt.rgba(0.8, 0.84, 0.92, 1) : Qt.rgba(0.46, 0.5, 0.6, 1)
    readonly property color accentBlue: Qt.rgba(0.33, 0.55, 1.0, 1)
    readonly property color accentBlueDeep: Qt.rgba(0.19, 0.42, 0.97, 1)
    readonly property color accentBlueSoft: theme.faded(theme.accentBlue, 0.16)
    readonly property color accentBlueBorder: theme.faded(theme.accentBlue, 0.35)
    readonly property color statusRunning: Qt.rgba(0.27, 0.85, 0.51, 1)
    readonly property color statusIdle: Qt.rgba(0.45, 0.6, 0.9, 1)
    readonly property color statusDelayed: Qt.rgba(0.98, 0.74, 0.22, 1)
    readonly property color statusCompleted: Qt.rgba(0.27, 0.85, 0.51, 1)
    readonly property color statusError: Qt.rgba(0.98, 0.37, 0.37, 1)
    readonly property color statusPaused: Qt.rgba(0.75, 0.55, 0.95, 1)
    readonly property color statusArming: Qt.rgba(0.55, 0.78, 1.0, 1)
    /// The tint of the card with the additional options.
    readonly property color optionsViolet: Qt.rgba(0.77, 0.4, 0.98, 1)
    readonly property color fieldFill: Qt.rgba(0.051, 0.075, 0.141, 1)
    readonly property color fieldStroke: theme.white(theme.highContrast ? 0.6 : 0.09)
    readonly property color fieldStrokeFocus: theme.faded(theme.accentBlue, theme.highContrast ? 1 : 0.6)

    /// White at that opacity: hairlines and hover fills that have no name of their own.
    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity);
    }

    /// Black at that opacity: the shadows of cards and menus.
    function black(opacity: real): color {
        return Qt.rgba(0, 0, 0, opacity);
    }

    /// What lies between a sheet and whatever it keeps from being used.
    readonly property color sheetShade: theme.black(0.55)

    /// `base` at `opacity` of its own.
    function faded(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, base.a * opacity);
    }

    /// The colour that far on the way from one to the other, 0…1.
    function mixed(start: color, end: color, progress: real): color {
        return Qt.rgba(start.r + (end.r - start.r) * progress, start.g + (end.g - start.g) * progress,
                start.b + (end.b - start.b) * progress, start.a + (end.a - start.a) * progress);
    }

    /// The family of all text; the desktop's own unless somebody sets another.
    property string fontFamily: Application.font.family

    /// How much larger than the drawn sizes text and icons are, for a desktop with large text.
    property real fontScale: 1

    /// Of a button without a look of its own, while it is held down.
    readonly property real pressedOpacity: 0.75

    /// How dense the white veil is over a control that has no look of its own for the pointer: while the pointer is on it, and
    /// while it is held down.
    readonly property real hoverVeil: theme.highContrast ? 0.14 : 0.06
    readonly property real pressedVeil: theme.highContrast ? 0.22 : 0.1

    /// Outlines stand out and all text is nearly white while this is set.
    property bool highContrast: false

    /// Nothing moves and nothing fades while this is set.
    property bool reducedMotion: false

    /// The curves of transitions that start and end gently, and of those that only end so.
    readonly property var easeInOut: [0.42, 0, 0.58, 1, 1, 1]
    readonly property var easeOut: [0, 0, 0.58, 1, 1, 1]

    /// Height in points of something drawn for `points` at the normal text size.
    function scaled(points: real): real {
        return points * theme.fontScale;
    }

    /// The font of `points` in the given weight, to the nearest whole pixel: type comes in no other sizes.
    function font(points: real, weight: int): font {
        return Qt.font({ family: theme.fontFamily, pixelSize: Math.round(theme.scaled(points)), weight: weight });
    }

    /// Milliseconds that a transition of `seconds` takes.
    function duration(seconds: real): int {
        return theme.reducedMotion ? 0 : Math.round(seconds * 1000);
    }
}
