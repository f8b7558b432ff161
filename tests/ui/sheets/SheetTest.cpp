#include "harness/WindowTest.h"
#include "ui/window/DesktopLimits.h"

#include <QClipboard>
#include <QGuiApplication>

namespace velloran::tests {

namespace {

class SheetTest : public WindowTest {
protected:
    void openSmallWindow() {
        open(R"(
            ShellWindow {
                id: window
                property bool isShown: false
                property var log: []
                limits: ["The pointer cannot be seen here.", "<b>Clicks</b> & keys need a permission."]
                options: Component { FaceButton { label: "Option" } }
                Column { y: 80
                    FaceButton { label: "First"; onTriggered: window.log.push("first") }
                    FaceButton { label: "Second"; onTriggered: window.isShown = true }
                }
                Sheet {
                    shown: window.isShown
                    title: "A sheet"
                    onClosedByUser: window.isShown = false
                    Column {
                        property bool touched: false
                        FaceButton { label: parent.touched ? "Touched" : "Fresh"; onTriggered: parent.touched = true }
                        FaceButton { label: "Middle" }
                        FaceButton { label: "Last" }
                    }
                }
            })");
    }

    void openSheet() {
        click(get("Second"));
        get("Middle");
    }

    void expectSheetIsGone() {
        EXPECT_TRUE(until([&] { return !shows("Middle"); }));
    }

    [[nodiscard]] QStringList log() const { return property("log").value<QJSValue>().toVariant().toStringList(); }
};

} // namespace

TEST_F(SheetTest, EscapeClosesIt) {
    openSmallWindow();
    openSheet();
    EXPECT_TRUE(property("isSheetOpen").toBool());
    tap(escapeKey);
    expectSheetIsGone();
    EXPECT_FALSE(property("isSheetOpen").toBool());
}

TEST_F(SheetTest, TabGoesRoundInIt) {
    openSmallWindow();
    openSheet();
    QStringList ring;
    for (int i = 0; i < 4; ++i) {
        tap(tabKey);
        ring.append(focused());
    }
    EXPECT_EQ(ring, (QStringList{"Fresh", "Middle", "Last", "Fresh"}));
    tap(tabKey, {shiftKey});
    EXPECT_EQ(focused(), "Last");
    tap(tabKey, {shiftKey});
    EXPECT_EQ(focused(), "Middle");
}

TEST_F(SheetTest, ShiftTabEntersItFromTheEnd) {
    openSmallWindow();
    openSheet();
    tap(tabKey, {shiftKey});
    EXPECT_EQ(focused(), "Last");
}

TEST_F(SheetTest, TheFocusGoesBackToWhereItWas) {
    openSmallWindow();
    tap(tabKey);
    tap(tabKey);
    ASSERT_EQ(focused(), "Second");
    tap(spaceKey);
    get("Middle");
    tap(tabKey);
    tap(escapeKey);
    EXPECT_EQ(focused(), "Second");
    EXPECT_TRUE(window->activeFocusItem()->property("visualFocus").toBool());
    tap(tabKey, {shiftKey});
    EXPECT_EQ(focused(), "First");
}

TEST_F(SheetTest, APointerLeavesNoRing) {
    openSmallWindow();
    openSheet();
    tap(tabKey);
    tap(escapeKey);
    EXPECT_EQ(focused(), "Second");
    EXPECT_FALSE(window->activeFocusItem()->property("visualFocus").toBool());
}

TEST_F(SheetTest, ANumberFieldHasItsRingAgain) {
    openMainWindow();
    for (int i = 0; i < 60 && focused() != "Click Interval"; ++i) {
        tap(tabKey);
    }
    ASSERT_TRUE(window->activeFocusItem()->property("visualFocus").toBool());
    tap(commaKey, {controlKey});
    get("Done");
    tap(escapeKey);
    EXPECT_TRUE(until([&] { return !shows("Done"); }));
    EXPECT_EQ(focused(), "Click Interval");
    EXPECT_TRUE(window->activeFocusItem()->property("visualFocus").toBool());
}

TEST_F(SheetTest, WhatLiesBelowCannotBeUsed) {
    openSmallWindow();
    openSheet();
    clickAt(frame(get("First")).center());
    EXPECT_EQ(log(), QStringList());
    EXPECT_TRUE(shows("Middle"));
    tap(commaKey, {controlKey});
    EXPECT_FALSE(shows("Option"));
}

TEST_F(SheetTest, OnceClosedItKeepsNobodyFromGoingOn) {
    open(R"(
        ShellWindow {
            id: window
            property bool isShown: true
            property var log: []
            FaceButton { anchors.fill: parent; label: "Below"; onTriggered: window.log.push("below") }
            Sheet {
                shown: window.isShown
                // Has not faded out for as long as the test takes.
                opacity: 1
                onClosedByUser: window.isShown = false
                Item { implicitWidth: 400; implicitHeight: 300; BodyText { text: "Panel" } }
            }
        })");
    const QPointF onPanel = frame(get("Panel")).center();
    const QPointF beside(40, 400);
    clickAt(beside);
    ASSERT_EQ(log(), QStringList());
    tap(escapeKey);
    ASSERT_TRUE(shows("Panel"));
    clickAt(beside);
    EXPECT_EQ(log(), QStringList("below"));
    // Still to be seen: a second click on what has closed the sheet does nothing else.
    clickAt(onPanel);
    EXPECT_EQ(log(), QStringList("below"));
}

TEST_F(SheetTest, TheWindowCanStillBeClosed) {
    openSmallWindow();
    openSheet();
    click(get("Close"));
    EXPECT_TRUE(until([&] { return quits == 1; }));
}

TEST_F(SheetTest, EveryShowingIsANewOne) {
    openSmallWindow();
    openSheet();
    click(get("Fresh"));
    EXPECT_TRUE(shows("Touched"));
    tap(escapeKey);
    expectSheetIsGone();
    openSheet();
    EXPECT_TRUE(shows("Fresh"));
}

TEST_F(SheetTest, HasTheFocusWhileItIsStillFadingIn) {
    open(R"(
        ShellWindow {
            id: window
            property bool isShown: false
            function begin() { Theme.reducedMotion = false; isShown = true }
            Sheet {
                shown: window.isShown
                FaceButton { label: "Only" }
            }
        })");
    QMetaObject::invokeMethod(window, "begin");
    tap(tabKey);
    EXPECT_EQ(focused(), "Only");
}

TEST_F(SheetTest, OneAboveAnotherDarkensTheWindowNoFurther) {
    open(R"(
        ShellWindow {
            property bool isShown: false
            property bool isSecondShown: false
            Rectangle { anchors.fill: parent; color: "#808080" }
            Sheet {
                shown: isShown
                Item { implicitWidth: 400; implicitHeight: 300; BodyText { text: "Lower" } }
            }
            Sheet {
                shown: isSecondShown
                Item { implicitWidth: 200; implicitHeight: 100; BodyText { text: "Upper" } }
            }
        })");
    const auto pixel = [&](QPointF point) {
        const double scale = window->effectiveDevicePixelRatio();
        return window->grabWindow().pixelColor((point * scale).toPoint());
    };
    const QPointF beside(40, 400);
    const QPointF onLowerPanel = QPointF(window->width() / 2.0 - 150, window->height() / 2.0 + 100);
    const QColor bright = pixel(beside);
    window->setProperty("isShown", true);
    ASSERT_TRUE(until([&] { return shows("Lower"); }));
    const QColor dark = pixel(beside);
    const QColor panel = pixel(onLowerPanel);
    EXPECT_LT(dark.green(), bright.green() * 0.5);
    window->setProperty("isSecondShown", true);
    ASSERT_TRUE(until([&] { return shows("Upper"); }));
    EXPECT_EQ(pixel(beside), dark);
    EXPECT_LT(pixel(onLowerPanel).blue(), panel.blue() * 0.6);
    window->setProperty("isSecondShown", false);
    ASSERT_TRUE(until([&] { return !shows("Upper"); }));
    EXPECT_EQ(pixel(beside), dark);
    EXPECT_EQ(pixel(onLowerPanel), panel);
    window->setProperty("isShown", false);
    ASSERT_TRUE(until([&] { return !shows("Lower"); }));
    EXPECT_EQ(pixel(beside), bright);
}

TEST_F(SheetTest, LiesInTheMiddleBelowTheTitle) {
    openSmallWindow();
    openSheet();
    const QQuickItem& middle = get("Middle");
    EXPECT_NEAR(frame(*middle.parentItem()).center().x(), window->width() / 2.0, 1);
    EXPECT_NEAR(frame(*middle.parentItem()).center().y(), window->height() / 2.0, 1);
}

TEST_F(SheetTest, AboutTellsVersionAndLimits) {
    openSmallWindow();
    click(get("Menu"));
    click(get("About Velloran"));
    EXPECT_TRUE(shows("Version 1.2.3"));
    EXPECT_TRUE(shows("This desktop"));
    EXPECT_TRUE(shows("The pointer cannot be seen here."));
    EXPECT_TRUE(shows("<b>Clicks</b> & keys need a permission."));
    keepPicture("about");
    tap(tabKey);
    EXPECT_EQ(focused(), "Close");
    tap(returnKey);
    EXPECT_TRUE(until([&] { return !shows("Version 1.2.3"); }));
    EXPECT_EQ(quits, 0);
}

TEST_F(SheetTest, AboutFollowsTheDesktop) {
    openMainWindow();
    click(get("Menu"));
    click(get("About Velloran"));
    platform::Desktop desktop;
    desktop.clicks.limit = "Nothing clicks.";
    desktop.trust.limit = "Nobody asks.";
    desktop.hotKeys.limit = "Nothing is heard.";
    desktop.pointer.limit = "Nothing is seen.";
    window->setProperty("desktopLimits", QVariant::fromValue(DesktopLimits::of(desktop)));
    for (const char* const sentence : {"This desktop", "Nothing clicks.", "Nothing is heard.", "Nothing is seen."}) {
        EXPECT_TRUE(until([&] { return shows(sentence); })) << sentence;
    }
    window->setProperty("desktopLimits", QVariant::fromValue(DesktopLimits::of({})));
    EXPECT_TRUE(until([&] { return !shows("This desktop"); }));
}

TEST_F(SheetTest, AboutTellsHowTheRestWorks) {
    openMainWindow();
    click(get("Menu"));
    click(get("About Velloran"));
    platform::Desktop desktop;
    desktop.clicks.reason = "Somebody clicks.";
    desktop.trust.reason = "Nobody asks.";
    desktop.pointer = {.part = nullptr, .reason = "Not told here.", .limit = "Nothing is seen."};
    window->setProperty("desktopLimits", QVariant::fromValue(DesktopLimits::of(desktop)));
    for (const char* const sentence : {"Somebody clicks.", "Nobody asks.", "Not told here. Nothing is seen."}) {
        EXPECT_TRUE(until([&] { return shows(sentence); })) << sentence;
    }
    desktop.hotKeys.reason = "Somebody listens.";
    desktop.pointer = {.part = nullptr, .reason = "Somebody looks.", .limit = ""};
    window->setProperty("desktopLimits", QVariant::fromValue(DesktopLimits::of(desktop)));
    for (const char* const sentence :
         {"This desktop", "Somebody clicks.", "Nobody asks.", "Somebody listens.", "Somebody looks."}) {
        EXPECT_TRUE(until([&] { return shows(sentence); })) << sentence << " where everything works";
    }
    EXPECT_FALSE(shows("Not told here. Nothing is seen."));
    keepPicture("about-everything-works");
}

TEST_F(SheetTest, AboutHasALineForTheHotkeyThatCanBeCopied) {
    openMainWindow();
    click(get("Menu"));
    click(get("About Velloran"));
    EXPECT_FALSE(shows("Copy"));
    platform::Desktop desktop;
    desktop.hotKeys.limit = "No hotkey.";
    desktop.hotkeyAdvice = {"~/.config/keys", "bind F6 toggle"};
    const DesktopLimits limits = DesktopLimits::of(desktop);
    EXPECT_EQ(limits.hotkey, "No hotkey. For a key of your choice, put this into ~/.config/keys: bind F6 toggle");
    window->setProperty("desktopLimits", QVariant::fromValue(limits));
    EXPECT_TRUE(until([&] { return shows("For a key of your choice, put this into ~/.config/keys:"); }));
    settle();
    EXPECT_GT(get("Line for the hotkey").height(), 20);
    keepPicture("about-hotkey-line");
    click(get("Copy"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "bind F6 toggle");
    desktop.hotkeyAdvice.line = "binding = F6\ncommand = toggle";
    window->setProperty("desktopLimits", QVariant::fromValue(DesktopLimits::of(desktop)));
    settle();
    keepPicture("about-hotkey-lines");
    click(get("Copy"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "binding = F6\ncommand = toggle");
    QQuickItem& line = get("Line for the hotkey");
    const auto copies = [&](const QString& expected) {
        QGuiApplication::clipboard()->clear();
        tap(cKey, {controlKey});
        return until([&] { return QGuiApplication::clipboard()->text() == expected; });
    };
    click(line);
    tap(aKey, {controlKey});
    EXPECT_TRUE(copies("binding = F6\ncommand = toggle"));
    const QString part = QStringLiteral("F6 ↵ command");
    const int begin = static_cast<int>(line.property("text").toString().indexOf(part));
    QMetaObject::invokeMethod(&line, "select", Q_ARG(int, begin), Q_ARG(int, begin + static_cast<int>(part.size())));
    EXPECT_TRUE(copies("F6\ncommand"));
    QGuiApplication::clipboard()->clear();
    click(line, 3);
    click(get("Copy"));
    EXPECT_TRUE(until([&] { return QGuiApplication::clipboard()->text() == "F6\ncommand"; }));
}

TEST_F(SheetTest, AboutWithoutLimitsSaysNothingOfThem) {
    openMainWindow();
    click(get("Menu"));
    click(get("About Velloran"));
    EXPECT_TRUE(shows("Version 1.2.3"));
    EXPECT_FALSE(shows("This desktop"));
    keepPicture("about-without-limits");
}

TEST_F(SheetTest, OptionsHoldTheCardAndTheBar) {
    openMainWindow();
    click(get("Menu"));
    click(get("Presets and Options…"));
    for (const char* text : {"Additional Options", "Play click sound", "Minimize to menu bar", "Presets", "Import",
                             "Export", "Reset", "Done"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    click(get("Play click sound"));
    EXPECT_TRUE(store->config.get().playClickSound);
    click(get("Done"));
    EXPECT_TRUE(until([&] { return !shows("Additional Options"); }));
}

TEST_F(SheetTest, TallContentScrolls) {
    open(R"(
        ShellWindow {
            property bool isShown: true
            Sheet {
                shown: true
                Column {
                    Repeater { model: 60; BodyText { required property int index; text: "Line " + index } }
                    FaceButton { label: "At the end" }
                }
            }
        })");
    EXPECT_TRUE(until([&] { return shows("Line 0"); }));
    EXPECT_FALSE(shows("At the end"));
    tap(tabKey);
    EXPECT_EQ(focused(), "At the end");
    EXPECT_TRUE(until([&] { return shows("At the end"); }));
    EXPECT_FALSE(shows("Line 0"));
}

} // namespace velloran::tests
