#include "harness/WindowTest.h"

#include <QSignalSpy>

namespace velloran::tests {

namespace {

constexpr std::uint64_t shift = 0x20000;
constexpr std::uint64_t control = 0x40000;
constexpr std::uint64_t option = 0x80000;
constexpr std::uint64_t command = 0x100000;

/// The recorder in a window whose shortcuts and other controls would like the keys for themselves.
class RecorderTest : public WindowTest {
protected:
    void SetUp() override {
        open(R"(
            ShellWindow {
                id: window
                required property ConfigModel config
                property bool isOnScreen: true
                property var log: []
                Column { y: 80
                    TextInput { objectName: "text"; width: 200; height: 30; color: "white" }
                    HotkeyRecorder {
                        objectName: "recorder"
                        width: 300
                        visible: window.isOnScreen
                        hasCombo: window.config.hasHotkey
                        display: window.config.hotkeyDisplay
                        onRecorded: combo => window.config.setHotkey(combo)
                        onCleared: window.config.clearHotkey()
                    }
                    FaceButton { label: "Other"; onTriggered: window.log.push("other") }
                }
                Shortcut { sequence: "Ctrl+Return"; onActivated: window.log.push("return") }
                Shortcut { sequence: "F8"; onActivated: window.log.push("f8") }
            })");
    }

    void TearDown() override { Screen::current().setLayout("us"); }

    void record() {
        click(get("Click to record shortcut"));
        ASSERT_TRUE(isRecording());
    }

    [[nodiscard]] bool isRecording() const { return itemNamed("recorder")->property("isRecording").toBool(); }

    [[nodiscard]] std::optional<HotkeyCombo> combo() const { return store->config.get().hotkey; }

    [[nodiscard]] QString typed() const { return itemNamed("text")->property("text").toString(); }

    [[nodiscard]] QStringList shortcuts() const {
        return window->property("log").value<QJSValue>().toVariant().toStringList();
    }

    /// Nothing but the recorder has noticed the keys.
    void expectNothingElseHappened() {
        EXPECT_EQ(typed(), "");
        EXPECT_EQ(shortcuts(), QStringList());
        EXPECT_EQ(quits, 0);
        EXPECT_FALSE(property("isSheetOpen").toBool());
    }
};

} // namespace

TEST_F(RecorderTest, RecordsControlOptionS) {
    record();
    EXPECT_TRUE(shows("Press keys to record…"));
    tap(sKey, {controlKey, altKey});
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(combo(), (HotkeyCombo{control | option, 1, "⌃⌥S"}));
    EXPECT_TRUE(shows("⌃⌥S"));
    EXPECT_TRUE(shows("Clear hotkey"));
    keepPicture("recorder-set");
}

TEST_F(RecorderTest, RecordsAllFourModifiersInTheirOrder) {
    record();
    tap(sKey, {superKey, shiftKey, altKey, controlKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control | option | shift | command, 1, "⌃⌥⇧⌘S"}));
}

TEST_F(RecorderTest, APlainKeyIsSwallowedAndRecordingGoesOn) {
    click(*itemNamed("text"));
    record();
    tap(aKey);
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(combo(), std::nullopt);
    expectNothingElseHappened();
    keepPicture("recorder-recording");
}

TEST_F(RecorderTest, KeysGoWhereTheyBelongAfterwards) {
    record();
    tap(aKey, {controlKey});
    click(*itemNamed("text"));
    type("ab");
    EXPECT_EQ(typed(), "ab");
    tap(f8Key);
    EXPECT_EQ(shortcuts(), QStringList{"f8"});
}

TEST_F(RecorderTest, EscapeKeepsTheEarlierCombo) {
    configModel->chooseHotkey(0);
    const auto before = combo();
    click(get("⌘⌥A"));
    tap(escapeKey);
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(combo(), before);
    EXPECT_TRUE(shows("⌘⌥A"));
}

TEST_F(RecorderTest, EscapeCancelsWithModifiersToo) {
    record();
    tap(escapeKey, {controlKey, shiftKey});
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(combo(), std::nullopt);
    expectNothingElseHappened();
}

TEST_F(RecorderTest, ABareModifierIsNoKeyPress) {
    record();
    for (const Key key : {controlKey, shiftKey, altKey, superKey, altGrKey}) {
        tap(key);
    }
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(combo(), std::nullopt);
    tap(aKey, {shiftKey});
    EXPECT_EQ(combo(), (HotkeyCombo{shift, 0, "⇧A"}));
}

TEST_F(RecorderTest, ShortcutsOfTheWindowAreRecordedAndDoNothing) {
    struct Case {
        Key key;
        HotkeyCombo combo;
    };

    for (const Case& each : {Case{qKey, {control, 12, "⌃Q"}}, Case{commaKey, {control, 43, "⌃,"}},
                             Case{tabKey, {control, 48, "⌃⇥"}}, Case{returnKey, {control, 36, "⌃↩"}},
                             Case{spaceKey, {control, 49, "⌃Space"}}, Case{f8Key, {control, 100, "⌃F8"}}}) {
        configModel->clearHotkey();
        record();
        tap(each.key, {controlKey});
        EXPECT_EQ(combo(), each.combo);
        EXPECT_FALSE(isRecording());
    }
    expectNothingElseHappened();
}

TEST_F(RecorderTest, FocusAndButtonKeysWithoutModifiersAreSwallowed) {
    record();
    const QQuickItem* before = window->activeFocusItem();
    for (const Key key : {tabKey, returnKey, spaceKey, f8Key, upKey}) {
        tap(key);
    }
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(window->activeFocusItem(), before);
    expectNothingElseHappened();
}

TEST_F(RecorderTest, AHeldKeyDoesNothingMoreUntilItIsLetGo) {
    Screen::current().user().setRepeat(50, 20);
    record();
    hold(controlKey, true);
    hold(qKey, true);
    EXPECT_EQ(combo(), (HotkeyCombo{control, 12, "⌃Q"}));
    // The key goes on repeating: wait until a good number of repeats has come in.
    int repeats = 0;

    class Counter final : public QObject {
    public:
        explicit Counter(int& count) : count_(count) {}

        bool eventFilter(QObject*, QEvent* event) override {
            const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
            if (isKey && static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
                ++count_;
            }
            return false;
        }

    private:
        int& count_;
    } counter(repeats);

    // Filters that come later are asked first.
    qApp->installEventFilter(&counter);
    EXPECT_TRUE(until([&] { return repeats > 10; }));
    qApp->removeEventFilter(&counter);
    hold(qKey, false);
    hold(controlKey, false);
    Screen::current().user().setRepeat(500, 30);
    expectNothingElseHappened();
    tap(qKey, {controlKey});
    EXPECT_EQ(quits, 1);
}

TEST_F(RecorderTest, TheMainButtonEndsRecording) {
    record();
    click(get("Press keys to record…"));
    EXPECT_FALSE(isRecording());
    EXPECT_TRUE(shows("Click to record shortcut"));
    click(*itemNamed("text"));
    type("a");
    EXPECT_EQ(typed(), "a");
}

TEST_F(RecorderTest, LeavingTheScreenLetsGoOfTheKeyboard) {
    record();
    EXPECT_TRUE(monitor->isInstalled());
    window->setProperty("isOnScreen", false);
    EXPECT_FALSE(monitor->isInstalled());
    click(*itemNamed("text"));
    type("ab");
    EXPECT_EQ(typed(), "ab");
}

TEST_F(RecorderTest, TheEndOfTheWindowLetsGoOfTheKeyboard) {
    record();
    root.reset();
    EXPECT_FALSE(monitor->isInstalled());
}

TEST_F(RecorderTest, ClearingRemovesTheComboAndTheButton) {
    configModel->chooseHotkey(2);
    settle();
    click(get("Clear hotkey"));
    EXPECT_TRUE(until([&] { return combo() == std::nullopt; }));
    EXPECT_TRUE(until([&] { return !shows("Clear hotkey"); }));
}

TEST_F(RecorderTest, ClearingDoesNotEndARecording) {
    configModel->chooseHotkey(2);
    click(get("⌃⌥S"));
    click(get("Clear hotkey"));
    EXPECT_EQ(combo(), std::nullopt);
    EXPECT_TRUE(isRecording());
    tap(aKey, {controlKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control, 0, "⌃A"}));
}

TEST_F(RecorderTest, WorksByKeyboardAlone) {
    click(*itemNamed("text"));
    tap(tabKey);
    ASSERT_EQ(focused(), "Click to record shortcut");
    tap(spaceKey);
    EXPECT_TRUE(isRecording());
    tap(escapeKey);
    EXPECT_FALSE(isRecording());
    tap(returnKey);
    EXPECT_TRUE(isRecording());
    tap(sKey, {controlKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control, 1, "⌃S"}));
    EXPECT_EQ(focused(), "⌃S");
}

TEST_F(RecorderTest, DigitsTakeShiftIntoAccount) {
    record();
    tap(digit1Key, {controlKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control, 18, "⌃1"}));
    configModel->clearHotkey();
    record();
    tap(digit1Key, {controlKey, shiftKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control | shift, 18, "⌃⇧!"}));
}

TEST_F(RecorderTest, KeypadAndLocksMakeNoExtraModifier) {
    const auto& user = Screen::current().user();
    user.lockModifiers(0x12, true);
    record();
    tap(keypad5Key, {altKey});
    ASSERT_TRUE(combo());
    EXPECT_EQ(combo()->modifierFlagsRaw, option);
    EXPECT_EQ(combo()->keyCode, 87U);
    user.lockModifiers(0x12, false);
}

TEST_F(RecorderTest, NonLatinLayoutsKeepTheKeyAndShowItsLetter) {
    Screen::current().setLayout("ru");
    record();
    tap(sKey, {controlKey, altKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control | option, 1, "⌃⌥Ы"}));
}

TEST_F(RecorderTest, ADesktopThatDoesNotTellItsLayoutHasTheDefaultOne) {
    Screen::current().setLayout("ru");
    const auto told = platform.desktop.get();
    platform.desktop.set({});
    record();
    tap(sKey, {controlKey, altKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control | option, 1, "⌃⌥S"}));
    platform.desktop.set(told);
    click(get("⌃⌥S"));
    tap(sKey, {controlKey, altKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control | option, 1, "⌃⌥Ы"})) << "as soon as it tells";
}

TEST_F(RecorderTest, ADeadKeyIsNotRecorded) {
    Screen::current().setLayout("de");
    record();
    tap(equalKey, {controlKey});
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(combo(), std::nullopt);
    tap(aKey, {controlKey});
    EXPECT_EQ(combo(), (HotkeyCombo{control, 0, "⌃A"}));
}

} // namespace velloran::tests
