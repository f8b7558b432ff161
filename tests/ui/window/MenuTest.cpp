#include "harness/WindowTest.h"

namespace velloran::tests {

namespace {

const QString chooserButton = "Choose a preset hotkey";

/// The menus of the real window, with a real keyboard and mouse.
class MenuTest : public WindowTest {
protected:
    static constexpr Key homeKey{110};
    static constexpr Key endKey{115};
    static constexpr Key letterF{41};

    void SetUp() override { openMainWindow(); }

    void goTo(const QString& label) {
        for (int i = 0; i < 60 && focused() != label; ++i) {
            tap(tabKey);
        }
        ASSERT_EQ(focused(), label);
    }

    /// The entry that is selected; nothing when none is.
    [[nodiscard]] QString selected() const {
        for (const QString& entry : menuEntries()) {
            const QQuickItem* item = find(entry);
            for (; item != nullptr; item = item->parentItem()) {
                if (item->inherits("QQuickMenuItem")) {
                    break;
                }
            }
            if (item != nullptr && item->property("highlighted").toBool()) {
                return entry;
            }
        }
        return {};
    }

    [[nodiscard]] bool hasRing() const { return window->activeFocusItem()->property("visualFocus").toBool(); }

    /// Whether the chooserButton's help is to be seen: then it lies in front of the button, which has the same text.
    [[nodiscard]] bool isHelpShown() const {
        const QQuickItem* front = find(chooserButton);
        return front != nullptr && !front->inherits("QQuickAbstractButton");
    }

    void expectNoMenu() {
        EXPECT_TRUE(until([&] { return menuEntries().isEmpty(); }));
    }

    /// The frame of all entries of the open menu together.
    [[nodiscard]] QRectF entries() {
        QRectF all;
        for (const QString& entry : menuEntries()) {
            if (entry != "-") {
                all |= frame(button(entry));
            }
        }
        return all;
    }
};

} // namespace

TEST_F(MenuTest, ADoubleClickOnTheChooserChoosesNothing) {
    doubleClickAt(frame(get(chooserButton)).center());
    expectNoMenu();
    EXPECT_FALSE(store->config.get().hotkey);
}

TEST_F(MenuTest, OpensAboveItsButtonWhereThereIsNoRoomBelow) {
    const QRectF opener = frame(button(chooserButton));
    clickAt(opener.center());
    ASSERT_EQ(menuEntries().size(), 10);
    // The menu has a padding of 5 and keeps a distance of 4.
    EXPECT_EQ(entries().bottom() + 5 + 4, opener.top());
    keepPicture("hotkey-choices");
}

TEST_F(MenuTest, OpensBelowItsButtonWhereThereIsRoom) {
    const QRectF opener = frame(button("Left Click"));
    clickAt(opener.center());
    ASSERT_EQ(menuEntries().size(), 3);
    EXPECT_EQ(entries().top(), opener.bottom() + 4 + 5);
}

TEST_F(MenuTest, TheWindowsMenuOpensBesideThePointer) {
    for (const double x : {200.0, 700.0}) {
        const QPointF pointer(x, 32);
        clickAt(pointer, 3);
        ASSERT_FALSE(menuEntries().isEmpty());
        EXPECT_GT(entries().top() - 5, pointer.y());
        tap(escapeKey);
        expectNoMenu();
    }
}

TEST_F(MenuTest, TheHoverHelpGoesWhenAMenuOpens) {
    goTo(chooserButton);
    moveTo(frame(button(chooserButton)).center());
    ASSERT_TRUE(until([&] { return isHelpShown(); }));
    tap(spaceKey);
    ASSERT_FALSE(menuEntries().isEmpty());
    EXPECT_TRUE(until([&] { return !isHelpShown(); }));
}

TEST_F(MenuTest, OpenedByAKeyItHasASelectionThatTheKeysMove) {
    goTo(chooserButton);
    tap(spaceKey);
    const QStringList all = menuEntries();
    ASSERT_EQ(all.size(), 10);
    EXPECT_EQ(selected(), all.first());
    tap(upKey);
    EXPECT_EQ(selected(), "Clear Hotkey");
    tap(upKey);
    EXPECT_EQ(selected(), all.at(7));
    tap(downKey);
    tap(downKey);
    EXPECT_EQ(selected(), all.first());
    tap(endKey);
    EXPECT_EQ(selected(), "Clear Hotkey");
    tap(homeKey);
    EXPECT_EQ(selected(), all.first());
    tap(sKey);
    EXPECT_EQ(selected(), all.at(2));
    for (const int next : {3, 5, 6, 7, 3}) {
        tap(letterF);
        EXPECT_EQ(selected(), all.at(next));
    }
    tap(returnKey);
    ASSERT_TRUE(store->config.get().hotkey);
    EXPECT_EQ(store->config.get().hotkey->display, "⌘⇧F");
}

TEST_F(MenuTest, OpenedByThePointerItTakesTheSameKeys) {
    click(get(chooserButton));
    ASSERT_EQ(menuEntries().size(), 10);
    EXPECT_EQ(selected(), "");
    tap(upKey);
    EXPECT_EQ(selected(), "Clear Hotkey");
    tap(homeKey);
    EXPECT_EQ(selected(), menuEntries().first());
}

TEST_F(MenuTest, TheRingIsBackOnTheButtonAfterwards) {
    for (const char* label : {"Left Click", "Choose a preset hotkey", "Menu"}) {
        goTo(label);
        ASSERT_TRUE(hasRing());
        tap(spaceKey);
        ASSERT_FALSE(menuEntries().isEmpty());
        tap(escapeKey);
        expectNoMenu();
        EXPECT_EQ(focused(), label);
        EXPECT_TRUE(hasRing()) << label;
    }
    goTo(chooserButton);
    tap(spaceKey);
    tap(returnKey);
    expectNoMenu();
    EXPECT_EQ(focused(), chooserButton);
    EXPECT_TRUE(hasRing());
}

TEST_F(MenuTest, APointerLeavesNoRing) {
    click(get(chooserButton));
    ASSERT_FALSE(menuEntries().isEmpty());
    tap(escapeKey);
    expectNoMenu();
    EXPECT_EQ(focused(), chooserButton);
    EXPECT_FALSE(hasRing());
}

TEST_F(MenuTest, TheRingIsBackAfterASheetThatAMenuOpened) {
    goTo("Menu");
    tap(spaceKey);
    tap(returnKey);
    get("Additional Options");
    tap(escapeKey);
    EXPECT_TRUE(until([&] { return !shows("Additional Options"); }));
    EXPECT_EQ(focused(), "Menu");
    EXPECT_TRUE(hasRing());
}

TEST_F(MenuTest, APressBesideItOnlyClosesIt) {
    const ClickerStatus before = store->runtime().get().status;
    click(get(chooserButton));
    ASSERT_FALSE(menuEntries().isEmpty());
    click(get("Start"));
    expectNoMenu();
    EXPECT_EQ(store->runtime().get().status, before);
    click(get("Start"));
    EXPECT_NE(store->runtime().get().status, before);
}

TEST_F(MenuTest, ANumberFieldHasItsRingAgainAfterAMenuThatAPointerOpened) {
    goTo("Click Interval");
    ASSERT_TRUE(hasRing());
    click(button("Menu"));
    ASSERT_FALSE(menuEntries().isEmpty());
    tap(escapeKey);
    expectNoMenu();
    EXPECT_EQ(focused(), "Click Interval");
    EXPECT_TRUE(hasRing());
}

} // namespace velloran::tests
