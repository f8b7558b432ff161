#include "harness/WindowTest.h"

namespace velloran::tests {

namespace {

const QString longName = QString("long ").repeated(200).trimmed();

class FooterBarTest : public WindowTest {
protected:
    void SetUp() override {
        openMainWindow();
        tap(commaKey, {controlKey});
        get("Presets");
    }

    void save(const QString& name) { presetsModel->saveCurrent(name); }

    [[nodiscard]] QStringList names() const {
        QStringList all;
        for (const Preset& preset : store->presets().get()) {
            all.append(QString::fromStdString(preset.name));
        }
        return all;
    }

    void openSaveSheet() {
        click(get("Presets"));
        click(get("Save current as preset…"));
        ASSERT_TRUE(shows("Save preset"));
    }

    /// What stands in the field with the focus.
    [[nodiscard]] QString typed() const { return window->activeFocusItem()->property("text").toString(); }

    void expectSheetIsGone() {
        EXPECT_TRUE(until([&] { return !shows("Save preset"); }));
    }
};

} // namespace

TEST_F(FooterBarTest, WithoutOwnPresetsTheMenuIsShort) {
    click(get("Presets"));
    EXPECT_EQ(menuEntries(), (QStringList{"[Built-in]", "Steady — 1 click/sec, 100 clicks", "Rapid — 0.10s, 500 clicks",
                                          "AFK — every 30s, manual stop", "-", "Save current as preset…"}));
    keepPicture("presets-short");
}

TEST_F(FooterBarTest, ARestingPointerDeletesNothingForTheKeyboard) {
    const QStringList presets{"One", "Two", "Three"};
    for (const QString& name : presets) {
        save(name);
    }
    // Where the entry of the third one is going to be.
    click(get("Presets"));
    click(get("Delete Preset"));
    const QPointF third = frame(get("Delete \"Three\"")).center();
    tap(escapeKey);
    tap(escapeKey);
    ASSERT_TRUE(until([&] { return menuEntries().isEmpty(); }));
    moveTo(third);
    for (int i = 0; i < 20 && focused() != "Presets"; ++i) {
        tap(tabKey);
    }
    tap(spaceKey);
    constexpr Key letterD{40};
    tap(letterD);
    tap(rightKey);
    ASSERT_TRUE(until([&] { return shows("Delete \"One\""); }));
    settle();
    tap(returnKey);
    EXPECT_EQ(names(), (QStringList{"Two", "Three"}));
}

TEST_F(FooterBarTest, OwnPresetsStandInTheirOrderAndCanBeDeleted) {
    save("Work");
    save("Another");
    click(get("Presets"));
    EXPECT_EQ(menuEntries(), (QStringList{"[Built-in]", "Steady — 1 click/sec, 100 clicks", "Rapid — 0.10s, 500 clicks",
                                          "AFK — every 30s, manual stop", "[My Presets]", "Work", "Another", "-",
                                          "Delete Preset", "-", "Save current as preset…"}));
    click(get("Delete Preset"));
    EXPECT_TRUE(shows("Delete \"Work\""));
    keepPicture("presets-delete");
    click(get("Delete \"Another\""));
    EXPECT_EQ(names(), QStringList{"Work"});
    EXPECT_TRUE(until([&] { return menuEntries().isEmpty(); }));
    click(get("Presets"));
    EXPECT_FALSE(menuEntries().contains("Another"));
    EXPECT_TRUE(menuEntries().contains("Work"));
}

TEST_F(FooterBarTest, NamesAreShownAsTheyAre) {
    const QStringList odd{"Fish & Chips", "&File", "<b>bold</b>", "He said \"no\"", "-", "a\nb", longName};
    for (const QString& name : odd) {
        save(name);
    }
    click(get("Presets"));
    const QStringList entries = menuEntries();
    EXPECT_EQ(entries.mid(5, odd.size()), odd);
    EXPECT_EQ(entries.last(), "Save current as preset…");
    for (const QString& name : odd) {
        if (const QQuickItem* item = find(name)) {
            EXPECT_GE(frame(*item).left(), 0);
            EXPECT_LE(frame(*item).right(), window->width());
            EXPECT_LT(item->height(), 60);
        }
    }
    keepPicture("presets-odd");
    click(get("Delete Preset"));
    EXPECT_TRUE(shows("Delete \"Fish & Chips\""));
    EXPECT_TRUE(shows("Delete \"He said \"no\"\""));
    keepPicture("presets-odd-delete");
}

TEST_F(FooterBarTest, AnAmpersandIsNoShortcut) {
    save("&File");
    click(get("Presets"));
    get("&File");
    const Key letter{41}; // F
    configModel->setClickIntervalSeconds(3.0);
    tap(letter);
    EXPECT_TRUE(shows("&File"));
    // The toolkit closes menus at the Alt key, as desktops do.
    tap(letter, {altKey});
    EXPECT_EQ(store->config.get().clickIntervalSeconds, 3.0);
}

TEST_F(FooterBarTest, ChoosingABuiltInKeepsTheHotkey) {
    configModel->chooseHotkey(0);
    click(get("Presets"));
    click(get("Rapid — 0.10s, 500 clicks"));
    EXPECT_EQ(store->config.get().clickIntervalSeconds, 0.1);
    EXPECT_EQ(store->config.get().maxClicks, 500);
    ASSERT_TRUE(store->config.get().hotkey);
    EXPECT_EQ(store->config.get().hotkey->display, "⌘⌥A");
    EXPECT_TRUE(until([&] { return menuEntries().isEmpty(); }));
}

TEST_F(FooterBarTest, ChoosingAnOwnPresetAppliesIt) {
    configModel->setClickIntervalSeconds(42);
    save("Slow");
    presetsModel->resetToDefaults();
    click(get("Presets"));
    click(get("Slow"));
    EXPECT_EQ(store->config.get().clickIntervalSeconds, 42);
}

TEST_F(FooterBarTest, DeletingOneOfTwoOfTheSameNameTakesTheChosenOne) {
    save("Twin");
    save("Twin");
    const Uuid second = store->presets().get().at(1).id;
    click(get("Presets"));
    click(get("Delete Preset"));
    // The topmost entry is found last: the upper of the two.
    const QQuickItem& lower = get("Delete \"Twin\"");
    clickAt(frame(lower).center() - QPointF(0, lower.height()));
    ASSERT_EQ(store->presets().get().size(), 1U);
    EXPECT_EQ(store->presets().get().at(0).id, second);
}

TEST_F(FooterBarTest, TheMenuWorksByKeyboard) {
    save("Work");
    while (focused() != "Presets") {
        tap(tabKey);
    }
    tap(spaceKey);
    ASSERT_FALSE(menuEntries().isEmpty());
    tap(downKey);
    tap(returnKey);
    EXPECT_EQ(store->config.get().maxClicks, 500);
    EXPECT_TRUE(until([&] { return menuEntries().isEmpty(); }));
    EXPECT_EQ(focused(), "Presets");
    tap(returnKey);
    ASSERT_FALSE(menuEntries().isEmpty());
    tap(escapeKey);
    EXPECT_TRUE(until([&] { return menuEntries().isEmpty(); }));
    EXPECT_TRUE(shows("Done")) << "Escape closes the menu only";
}

TEST_F(FooterBarTest, SavesATrimmedName) {
    openSaveSheet();
    keepPicture("save-empty");
    type("  my way  ");
    keepPicture("save-typed");
    click(get("Save"));
    EXPECT_EQ(names(), QStringList{"my way"});
    expectSheetIsGone();
    openSaveSheet();
    EXPECT_EQ(typed(), "");
}

TEST_F(FooterBarTest, ReturnSaves) {
    openSaveSheet();
    type("work");
    tap(returnKey);
    EXPECT_EQ(names(), QStringList{"work"});
    expectSheetIsGone();
}

TEST_F(FooterBarTest, ABlankNameClosesTheSheetAndSavesNothing) {
    openSaveSheet();
    type("   ");
    tap(returnKey);
    expectSheetIsGone();
    EXPECT_EQ(names(), QStringList{});
    openSaveSheet();
    click(get("Save"));
    expectSheetIsGone();
    EXPECT_EQ(names(), QStringList{});
}

TEST_F(FooterBarTest, CancelForgetsTheNameAndEscapeKeepsIt) {
    openSaveSheet();
    type("draft");
    tap(escapeKey);
    expectSheetIsGone();
    EXPECT_TRUE(shows("Done")) << "the sheet below stays";
    openSaveSheet();
    EXPECT_EQ(typed(), "draft");
    click(get("Cancel"));
    expectSheetIsGone();
    EXPECT_EQ(names(), QStringList{});
    openSaveSheet();
    EXPECT_EQ(typed(), "");
}

TEST_F(FooterBarTest, TwoPresetsMayShareAName) {
    for (int i = 0; i < 2; ++i) {
        openSaveSheet();
        type("same");
        tap(returnKey);
        expectSheetIsGone();
    }
    EXPECT_EQ(names(), (QStringList{"same", "same"}));
    EXPECT_FALSE(store->presets().get().at(0).id == store->presets().get().at(1).id);
}

TEST_F(FooterBarTest, TheSaveSheetKeepsTheFocus) {
    openSaveSheet();
    QStringList ring;
    for (int i = 0; i < 6; ++i) {
        tap(tabKey);
        ring.append(focused());
    }
    EXPECT_EQ(ring, (QStringList{"Cancel", "Save", "Preset name", "Cancel", "Save", "Preset name"}));
    tap(tabKey, {shiftKey});
    EXPECT_EQ(focused(), "Save");
}

TEST_F(FooterBarTest, TheSaveSheetIsAsWideAsItIsToBe) {
    openSaveSheet();
    const QRectF field = frame(*window->activeFocusItem());
    QQuickItem* sheet = window->activeFocusItem();
    while (sheet->property("shown").isNull()) {
        sheet = sheet->parentItem();
    }
    const auto* view = sheet->property("shownContent").value<QQuickItem*>();
    EXPECT_EQ(view->width(), 380);
    EXPECT_EQ(field.left() - frame(*view).left(), 24);
    EXPECT_EQ(field.width(), 380 - 48);
    EXPECT_EQ(frame(*view).bottom() - frame(button("Save")).bottom(), 24);
}

TEST_F(FooterBarTest, ResetAsksNoQuestion) {
    configModel->setClickIntervalSeconds(42);
    click(get("Reset"));
    EXPECT_EQ(store->config.get(), AutoClickerConfig::default_());
}

TEST_F(FooterBarTest, LiesInItsFrame) {
    const QRectF presets = frame(button("Presets"));
    const QRectF import = frame(button("Import"));
    const QRectF exporting = frame(button("Export"));
    const QRectF reset = frame(button("Reset"));
    const QQuickItem* bar = button("Reset").parentItem()->parentItem();
    EXPECT_EQ(frame(*bar).right() - reset.right(), 10);
    EXPECT_EQ(presets.left() - frame(*bar).left(), 10);
    EXPECT_LT(presets.right(), import.left());
    EXPECT_LT(import.right(), exporting.left());
    EXPECT_LT(exporting.right(), reset.left());
    EXPECT_EQ(reset.top() - frame(*bar).top(), 10);
    EXPECT_EQ(frame(*bar).bottom() - reset.bottom(), 10);
    EXPECT_EQ(button("Reset").property("leftPadding").toInt(), 12);
    EXPECT_EQ(button("Reset").property("topPadding").toInt(), 8);
    EXPECT_EQ(button("Reset").property("faceRadius").toInt(), 10);
    keepPicture("options");
}

} // namespace velloran::tests
