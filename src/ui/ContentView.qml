import QtQuick
import QtQuick.Layouts
import Velloran

/// The content of the window: both columns of cards under a title bar that stays in place.
Item {
    id: root

    required property ConfigModel config
    required property RunModel run
    /// What does not work on this desktop.
    property desktopLimits limits
    /// What the window buttons take of the left end of the title bar.
    property real leftInset: 0

    /// Whether the columns do not fit beside each other. Only tiles and small screens make the window that
    /// narrow; without a width yet it is not.
    readonly property bool isNarrow: root.width > 0 && root.width < 800
    readonly property real sideWidth: 280

    /// Makes the implicit height right at once. Otherwise that is so from the first frame on.
    function settle() {
        stack.ensurePolished();
    }

    implicitWidth: 920
    implicitHeight: titleBar.implicitHeight + scroll.contentHeight

    AppBackground {
        anchors.fill: parent
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TitleBar {
            id: titleBar

            Layout.fillWidth: true
            leftInset: root.leftInset
        }

        ScrollArea {
            id: scroll

            readonly property real sidePadding: 20

            Layout.fillWidth: true
            Layout.fillHeight: true
            contentHeight: stack.implicitHeight + scroll.sidePadding

            ColumnLayout {
                id: stack

                x: scroll.sidePadding
                width: scroll.width - 2 * scroll.sidePadding
                spacing: Theme.spacing.md

                GridLayout {
                    Layout.fillWidth: true
                    columns: root.isNarrow ? 1 : 2
                    columnSpacing: Theme.spacing.md
                    rowSpacing: Theme.spacing.md

                    ColumnLayout {
                        Layout.fillWidth: true
                        Layout.alignment: Qt.AlignTop
                        spacing: Theme.spacing.md

                        ClickConfigCard {
                            Layout.fillWidth: true
                            config: root.config
                        }

                        StopConditionsCard {
                            Layout.fillWidth: true
                            config: root.config
                            run: root.run
                        }

                        StartOptionsCard {
                            Layout.fillWidth: true
                            config: root.config
                            limits: root.limits
                        }
                    }

                    ColumnLayout {
                        Layout.fillWidth: root.isNarrow
                        Layout.minimumWidth: root.sideWidth
                        Layout.preferredWidth: root.sideWidth
                        Layout.maximumWidth: root.isNarrow ? Infinity : root.sideWidth
                        Layout.alignment: Qt.AlignTop
                        spacing: Theme.spacing.md

                        StatusCard {
                            Layout.fillWidth: true
                            run: root.run
                        }

                        PrimaryActionButton {
                            id: start

                            Layout.fillWidth: true
                            title: "Start"
                            systemImage: "play.fill"
                            help: root.limits.clicks
                            disabled: !root.config.isValid || root.run.status === RunModel.Running
                                      || root.run.status === RunModel.Delayed
                            // The last click of a counted run may come down on this very button: it must not start the next.
                            onPointerPressed: {
                                if (root.run.isEchoOfOwnClick())
                                    start.ignorePress();
                            }
                            onTriggered: root.run.start()
                        }

                        SecondaryActionButton {
                            Layout.fillWidth: true
                            title: "Stop"
                            systemImage: "stop.fill"
                            disabled: !root.run.isRunningState
                            active: root.run.isRunningState
                            onTriggered: root.run.stop()
                        }

                        SummaryCard {
                            Layout.fillWidth: true
                            config: root.config
                        }
                    }
                }

                InfoBanner {
                    Layout.fillWidth: true
                }
            }
        }
    }
}
