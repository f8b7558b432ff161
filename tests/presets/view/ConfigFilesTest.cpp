#include "presets/view/ConfigFiles.h"

#include "presets/view/ConfigFilesBench.h"

#include <QDir>

namespace velloran::tests {

using ConfigFilesTest = ConfigFilesBench;

TEST_F(ConfigFilesTest, ExportsThroughThePortal) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    ask(portal, "Export");
    EXPECT_EQ(portal.request.method, "SaveFile");
    EXPECT_EQ(portal.request.arguments.value(0), "x11:" + QString::number(window->winId(), 16));
    EXPECT_EQ(portal.request.options.value("current_name"), "Velloran-config.json");
    EXPECT_TRUE(portal.request.options.contains("filters"));
    portal.choose(uri("my config.json"));
    EXPECT_TRUE(isFree());
    EXPECT_EQ(read("my config.json"), exported());
    EXPECT_TRUE(read("my config.json").contains("42"));
}

TEST_F(ConfigFilesTest, CancelledExportWritesNothing) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    portal.respond(1);
    EXPECT_TRUE(isFree());
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    ask(portal, "Export");
    EXPECT_EQ(portal.requests, 2);
    portal.respond(1);
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, ImportsWhatWasExported) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    configModel->chooseHotkey(3);
    const AutoClickerConfig wanted = store->config.get();
    write("config.json", exported());
    presetsModel->resetToDefaults();
    ask(portal, "Import");
    EXPECT_EQ(portal.request.method, "OpenFile");
    EXPECT_EQ(portal.request.options.value("multiple"), false);
    portal.choose(uri("config.json"));
    EXPECT_TRUE(until([&] { return store->config.get() == wanted; }));
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, AnUnwritablePlaceIsSilent) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    portal.choose(uri("no/such/folder.json"));
    EXPECT_TRUE(isFree());
    ask(portal, "Export");
    portal.choose("https://example.org/config.json");
    EXPECT_TRUE(isFree());
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(ConfigFilesTest, OtherRequestPathsAreFollowed) {
    FakePortal portal(Screen::current().busAddress());
    portal.usesOwnPaths = true;
    ask(portal, "Export");
    settle();
    EXPECT_TRUE(until([&] {
        portal.choose(uri("late.json"));
        return !read("late.json").isEmpty();
    }));
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, APortalThatVanishesIsACancellation) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Import");
    portal.vanish();
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, TheWindowCanOnlyBeSeenMeanwhile) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    tap(escapeKey);
    click(get("Reset"));
    tap(tabKey);
    tap(spaceKey);
    click(get("Done"));
    EXPECT_TRUE(shows("Done"));
    EXPECT_EQ(portal.requests, 1);
    portal.respond(1);
    EXPECT_TRUE(isFree());
    EXPECT_EQ(focused(), "Export");
    tap(escapeKey);
    EXPECT_TRUE(until([&] { return !shows("Done"); }));
}

TEST_F(ConfigFilesTest, TheReminderWaitsForTheDialog) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    donations->isPromptVisible.set(true);
    settle();
    EXPECT_FALSE(shows("Support Velloran"));
    portal.respond(1);
    EXPECT_TRUE(isFree());
    EXPECT_FALSE(shows("Support Velloran"));
    tap(escapeKey);
    get("Support Velloran");
}

} // namespace velloran::tests
