#include "engine/AutoClickerStore.h"
#include "fakes/makeStore.h"
#include "hotkeys/HotkeyManager.h"
#include "platform/qt/HeldDisk.h"
#include "platform/qt/QtPreferences.h"
#include "platform/qt/Scratch.h"

#include <QLockFile>
#include <QString>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace velloran::platform::qt {

namespace {

using namespace std::chrono_literals;

/// Nobody waits that long but in a test that fails.
constexpr auto forEver = 60s;

class QtPreferencesWaitTest : public testing::Test {
protected:
    /// What another program would read.
    [[nodiscard]] std::optional<std::int64_t> onDisk(const std::string& key) const {
        return QtPreferences(path).integer(key);
    }

    tests::Scratch scratch;
    std::string path = scratch.file("velloran.ini");
};

} // namespace

TEST_F(QtPreferencesWaitTest, ChangesDoNotWaitForTheDiskAndAreReadAtOnce) {
    QtPreferences preferences(path);
    preferences.setInteger("gone", 1);
    ASSERT_TRUE(preferences.finish(forEver));
    tests::HeldDisk disk;
    preferences.setInteger("a", 1);
    ASSERT_TRUE(disk.waitUntilAsked());
    EXPECT_EQ(preferences.integer("a"), 1);
    preferences.change({{"b", true}, {"gone", std::nullopt}, {"c", Bytes("c")}});
    EXPECT_EQ(preferences.integer("a"), 1);
    EXPECT_EQ(preferences.truth("b"), true);
    EXPECT_EQ(preferences.bytes("c"), "c");
    EXPECT_FALSE(preferences.holds("gone"));
    preferences.setInteger("a", 2);
    preferences.remove("b");
    EXPECT_EQ(preferences.integer("a"), 2);
    EXPECT_FALSE(preferences.holds("b"));
    EXPECT_EQ(onDisk("a"), std::nullopt);
    EXPECT_EQ(onDisk("gone"), 1);
    EXPECT_TRUE(disk.holds()) << "something waited for the disk";
    disk.release();
    ASSERT_TRUE(preferences.finish(forEver));
    EXPECT_EQ(onDisk("a"), 2);
    EXPECT_EQ(QtPreferences(path).bytes("c"), "c");
    EXPECT_FALSE(QtPreferences(path).holds("b"));
    EXPECT_FALSE(QtPreferences(path).holds("gone"));
}

TEST_F(QtPreferencesWaitTest, ChangesMadeDuringAWriteAreOneWriteWithTheLastValues) {
    QtPreferences preferences(path);
    tests::HeldDisk disk;
    preferences.setInteger("a", 0);
    ASSERT_TRUE(disk.waitUntilAsked());
    for (int value = 1; value <= 1000; ++value) {
        preferences.setInteger("a", value);
        preferences.setInteger("b", -value);
    }
    disk.release();
    ASSERT_TRUE(preferences.finish(forEver));
    EXPECT_EQ(disk.writes(), 2);
    EXPECT_EQ(onDisk("a"), 1000);
    EXPECT_EQ(onDisk("b"), -1000);
}

TEST_F(QtPreferencesWaitTest, WhatBelongsTogetherIsOneWrite) {
    QtPreferences preferences(path);
    preferences.setInteger("gone", 1);
    ASSERT_TRUE(preferences.finish(forEver));
    tests::HeldDisk disk;
    disk.release();
    preferences.change({{"a", Date(1.5)}, {"b", std::int64_t{2}}, {"gone", std::nullopt}, {"b", std::int64_t{3}}});
    ASSERT_TRUE(preferences.finish(forEver));
    EXPECT_EQ(disk.writes(), 1);
    EXPECT_EQ(QtPreferences(path).date("a"), Date(1.5));
    EXPECT_EQ(onDisk("b"), 3);
    EXPECT_EQ(onDisk("gone"), std::nullopt);
}

TEST_F(QtPreferencesWaitTest, ALockThatIsHeldDelaysNobody) {
    QLockFile lock(QString::fromStdString(path + ".lock"));
    ASSERT_TRUE(lock.lock());
    // Whoever goes on without the lock comes to wait for this.
    tests::HeldDisk disk;
    QtPreferences preferences(path);
    preferences.setInteger("a", 1);
    preferences.setInteger("a", 2);
    EXPECT_EQ(preferences.integer("a"), 2);
    EXPECT_EQ(onDisk("a"), std::nullopt);
    EXPECT_TRUE(disk.holds()) << "something waited for the disk";
    disk.release();
    ASSERT_TRUE(preferences.finish(forEver));
    EXPECT_EQ(onDisk("a"), 2) << "who holds a lock for so long is not writing";
}

TEST_F(QtPreferencesWaitTest, TheCadenceNoticesNeitherTheDiskNorALock) {
    fakes::RecordingPlatform platform;
    QtPreferences preferences(path);
    QLockFile lock(QString::fromStdString(path + ".lock"));
    ASSERT_TRUE(lock.lock());
    tests::HeldDisk disk;
    auto store = fakes::makeStore(platform, preferences);
    store->config.modify([](AutoClickerConfig& config) {
        config.clickIntervalSeconds = 0.01;
        config.stopMode = StopMode::manual;
    });
    store->start();
    for (int edit = 1; edit <= 50; ++edit) {
        platform.loop.advance(0.1);
        store->config.modify([&](AutoClickerConfig& config) { config.maxClicks = edit; });
        store->saveCurrentAsPreset(std::to_string(edit));
        if (edit % 10 == 0) {
            platform.loop.advance(0.3);
        }
    }
    store->stop();
    platform.loop.runDue();
    // One click at the beginning, and one every hundredth of a second of the 6.5.
    ASSERT_GE(platform.flushTimes.size(), 650U);
    for (std::size_t click = 1; click < platform.flushTimes.size(); ++click) {
        const std::uint64_t interval = platform.flushTimes[click] - platform.flushTimes[click - 1];
        // A date is exact to a quarter of a microsecond.
        ASSERT_NEAR(static_cast<double>(interval), 1e7, 1e3);
    }
    EXPECT_TRUE(disk.holds()) << "something waited for the disk";
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(PresetStore(preferences).loadPresets().size(), 50U);
    disk.release();
    ASSERT_TRUE(preferences.finish(forEver));
    QtPreferences others(path);
    EXPECT_EQ(PresetStore(others).loadPresets(), store->presets().get());
    EXPECT_EQ(PresetStore(others).loadConfig(), store->config.get());
    store.reset();
    HotkeyManager::endShared();
}

TEST_F(QtPreferencesWaitTest, AChangeMadeWhileAnOlderOneFailsIsTheOneThatStays) {
    tests::inOrdinaryProcess([this] {
        const std::string folder = scratch.file("folder");
        std::filesystem::create_directory(folder);
        QtPreferences preferences(folder + "/velloran.ini");
        tests::HeldDisk disk;
        preferences.change({{"a", std::int64_t{1}}, {"b", std::int64_t{1}}});
        // The first thing that the disk has to keep is the lock.
        ASSERT_TRUE(disk.waitUntilAsked());
        preferences.setInteger("a", 2);
        chmod(folder.c_str(), 0555);
        disk.release();
        ASSERT_TRUE(preferences.finish(forEver));
        EXPECT_FALSE(std::filesystem::exists(folder + "/velloran.ini"));
        EXPECT_EQ(preferences.integer("a"), 2);
        EXPECT_EQ(preferences.integer("b"), 1);
        chmod(folder.c_str(), 0755);
        ASSERT_TRUE(preferences.finish(forEver));
        EXPECT_EQ(QtPreferences(folder + "/velloran.ini").integer("a"), 2);
        EXPECT_EQ(QtPreferences(folder + "/velloran.ini").integer("b"), 1);
    });
}

TEST_F(QtPreferencesWaitTest, TheEndWaitsForTheDisk) {
    auto preferences = std::make_unique<QtPreferences>(path);
    tests::HeldDisk disk;
    preferences->setInteger("a", 1);
    ASSERT_TRUE(disk.waitUntilAsked());
    preferences->setInteger("a", 2);
    EXPECT_FALSE(preferences->finish(1ms));
    std::thread other([&] { disk.release(); });
    EXPECT_TRUE(preferences->finish(forEver));
    other.join();
    EXPECT_EQ(onDisk("a"), 2);
}

TEST_F(QtPreferencesWaitTest, TheEndWaitsASecondAtMost) {
    auto preferences = std::make_unique<QtPreferences>(path);
    tests::HeldDisk disk;
    preferences->setInteger("a", 1);
    ASSERT_TRUE(disk.waitUntilAsked());
    preferences->setInteger("b", 2);
    const auto before = std::chrono::steady_clock::now();
    preferences.reset();
    EXPECT_GE(std::chrono::steady_clock::now() - before, 1s);
    EXPECT_TRUE(disk.holds()) << "the end waited until the disk was done";
    // What was under way is whole, should the disk come to it, and nothing else is begun.
    disk.release();
    while (onDisk("a") != 1 || std::filesystem::exists(path + ".lock")) {
        std::this_thread::yield();
    }
    EXPECT_EQ(onDisk("b"), std::nullopt);
    EXPECT_EQ(disk.writes(), 1);
}

TEST_F(QtPreferencesWaitTest, WithoutChangesThereIsNothingToWaitFor) {
    const tests::HeldDisk disk;
    QtPreferences preferences(path);
    EXPECT_TRUE(preferences.finish(0ms));
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace velloran::platform::qt
