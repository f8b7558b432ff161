#include "engine/StoreTest.h"

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;
using platform::Desktop;

/// Clicks of another backend: counts what it is to send.
class OtherEvents final : public platform::PointerEvents {
public:
    explicit OtherEvents(int& flushes) : flushes_(flushes) {}

    std::optional<platform::Point> location() override { return std::nullopt; }

    std::optional<platform::MouseEvent> makeMouseEvent(platform::MouseEventType type, platform::Point position,
                                                       platform::EventButton button) override {
        return platform::MouseEvent{type, position, button};
    }

    void post(const platform::MouseEvent& /*event*/) override {}

    void flush() override { ++flushes_; }

private:
    int& flushes_;
};

/// Clicks that take until they are let go, and tell on which thread they end.
class SlowEvents final : public platform::PointerEvents {
public:
    SlowEvents(std::future<void> release, std::optional<std::thread::id>& endedOn)
        : release_(std::move(release)), endedOn_(endedOn) {}

    SlowEvents(const SlowEvents&) = delete;
    SlowEvents& operator=(const SlowEvents&) = delete;

    ~SlowEvents() override { endedOn_ = std::this_thread::get_id(); }

    std::optional<platform::Point> location() override { return std::nullopt; }

    std::optional<platform::MouseEvent> makeMouseEvent(platform::MouseEventType /*type*/, platform::Point /*position*/,
                                                       platform::EventButton /*button*/) override {
        return std::nullopt;
    }

    void post(const platform::MouseEvent& /*event*/) override {}

    void flush() override { release_.wait(); }

private:
    std::future<void> release_;
    std::optional<std::thread::id>& endedOn_;
};

/// Clicks that are not posted until they are let go: they wait for a slow desktop, or the thread does not get on.
class WaitingEvents final : public platform::PointerEvents {
public:
    explicit WaitingEvents(std::shared_future<void> release, bool waitsForDesktop = true)
        : release_(std::move(release)), waitsForDesktop_(waitsForDesktop) {}

    std::optional<platform::Point> location() override { return std::nullopt; }

    std::optional<platform::MouseEvent> makeMouseEvent(platform::MouseEventType /*type*/, platform::Point /*position*/,
                                                       platform::EventButton /*button*/) override {
        return std::nullopt;
    }

    [[nodiscard]] bool waitsForDesktop() const override { return waitsForDesktop_; }

    void post(const platform::MouseEvent& /*event*/) override {}

    void flush() override {
        ++begun;
        release_.wait();
    }

    std::atomic<int> begun = 0;

private:
    std::shared_future<void> release_;
    bool waitsForDesktop_;
};

/// The permission of another backend.
class OtherTrust final : public platform::InputTrust {
public:
    bool isTrusted() override { return trusts; }

    bool requestPrompt(platform::PromptReason reason) override {
        prompts.push_back(reason);
        return trusts;
    }

    void onChanged(std::function<void()> changed) override { report = std::move(changed); }

    bool trusts = true;
    std::vector<platform::PromptReason> prompts;
    std::function<void()> report;
};

/// A store whose desktop gets and loses parts.
class StoreDesktopTest : public StoreTest {
protected:
    template<typename Change>
    void change(Change change) {
        platform.desktop.modify(change);
    }

    void loseClicks() {
        change([](Desktop& desktop) {
            desktop.clicks = {nullptr, "The portal is gone", {}};
            desktop.trust = {};
        });
    }

    /// Three clicks, of which the first is not posted for a long time, a stop, and three more.
    void expectNoClickPilesUp(bool waitsForDesktop) {
        platform.loop.usesThreads = true;
        std::promise<void> release;
        const auto clicks = std::make_shared<WaitingEvents>(release.get_future().share(), waitsForDesktop);
        change([&](Desktop& desktop) { desktop.clicks.part = clicks; });
        open(counted(3));
        store->start();
        platform.loop.runDue();
        advance(21.0);
        EXPECT_EQ(runtime().clicksCompleted, 1) << "the others wait for the first";
        EXPECT_EQ(status(), ClickerStatus::running) << "for they are still to come";
        store->stop();
        store->start();
        advance(21.0);
        EXPECT_EQ(runtime().clicksCompleted, 0) << "the new run waits for what is left of the old one";
        release.set_value();
        while (status() == ClickerStatus::running) {
            advance(0.01);
        }
        EXPECT_EQ(status(), ClickerStatus::completed);
        EXPECT_EQ(runtime().clicksCompleted, 3);
        change([](Desktop& desktop) { desktop.clicks.part = nullptr; });
        store.reset(); // waits for the clicks
        EXPECT_EQ(clicks->begun, 4) << "the one that was under way, and those of the new run";
    }

    [[nodiscard]] bool hasPermission() const { return store->hasAccessibilityPermission().get(); }

    const Desktop whole = platform.desktop.get();
};

AutoClickerConfig listening(AutoClickerConfig config) {
    config.hotkey = HotkeyCombo{0x840000, 100, "⌃F8"};
    return config;
}

} // namespace

TEST_F(StoreDesktopTest, ClicksAreThoseOfTheMoment) {
    open(unlimited());
    store->start();
    advance(1.0);
    int flushes = 0;
    change([&](Desktop& desktop) { desktop.clicks.part = std::make_shared<OtherEvents>(flushes); });
    EXPECT_EQ(status(), ClickerStatus::running);
    advance(14.0);
    expectClicks({0.0});
    EXPECT_EQ(flushes, 2);
}

TEST_F(StoreDesktopTest, ClickThatIsUnderWayKeepsWhatItClicksWith) {
    int flushes = 0;
    change([&](Desktop& desktop) { desktop.clicks.part = std::make_shared<OtherEvents>(flushes); });
    const std::weak_ptr<platform::PointerEvents> clicks = platform.desktop.get().clicks.part;
    open(unlimited());
    store->start();
    ASSERT_TRUE(platform.loop.runNext()) << "lets the others go first";
    while (store->runtime().get().clicksCompleted == 0) {
        ASSERT_TRUE(platform.loop.runNext());
    }
    ASSERT_EQ(flushes, 0) << "handed over, and not done";
    platform.desktop.set(whole);
    EXPECT_FALSE(clicks.expired());
    platform.loop.runDue();
    EXPECT_EQ(flushes, 1);
    EXPECT_TRUE(clicks.expired()) << "nobody needs it any more";
}

TEST_F(StoreDesktopTest, WhatClickedEndsOnTheMainThread) {
    platform.loop.usesThreads = true;
    std::promise<void> release;
    std::optional<std::thread::id> endedOn;
    change(
        [&](Desktop& desktop) { desktop.clicks.part = std::make_shared<SlowEvents>(release.get_future(), endedOn); });
    open(unlimited());
    store->start();
    platform.loop.runDue();
    ASSERT_EQ(runtime().clicksCompleted, 1) << "which is being posted";
    platform.desktop.set(whole);
    platform.loop.runDue();
    EXPECT_FALSE(endedOn);
    release.set_value();
    store->stop();
    platform.loop.runDue();
    store.reset(); // waits for the click
    platform.loop.runDue();
    EXPECT_EQ(endedOn, std::this_thread::get_id());
}

TEST_F(StoreDesktopTest, NoClickPilesUpBehindASlowDesktop) {
    expectNoClickPilesUp(true);
}

TEST_F(StoreDesktopTest, NoClickPilesUpInFrontOfAThreadThatStandsStill) {
    expectNoClickPilesUp(false);
}

TEST_F(StoreDesktopTest, WaitForASlowDesktopEndsWithItsRun) {
    platform.loop.usesThreads = true;
    std::promise<void> release;
    const auto clicks = std::make_shared<WaitingEvents>(release.get_future().share());
    change([&](Desktop& desktop) { desktop.clicks.part = clicks; });
    open(unlimited());
    store->start();
    advance(21.0);
    store->stop();
    release.set_value();
    advance(21.0);
    EXPECT_EQ(runtime().clicksCompleted, 1);
    change([](Desktop& desktop) { desktop.clicks.part = nullptr; });
    store.reset(); // waits for the clicks
    EXPECT_EQ(clicks->begun, 1);
}

TEST_F(StoreDesktopTest, LostClicksEndTheRunAndAreTakenUpAgainWithoutAQuestion) {
    open(unlimited());
    store->start();
    advance(8.0);
    platform.journal.clear();
    loseClicks();
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    EXPECT_FALSE(hasPermission());
    EXPECT_EQ(platform.journal, Journal{"log The portal is gone"});
    platform.isTrusted = false;
    platform.desktop.set(whole);
    EXPECT_FALSE(hasPermission());
    EXPECT_EQ(platform.count("prompt"), 0);
    platform.isTrusted = true;
    platform.trustChanged();
    EXPECT_TRUE(hasPermission());
    advance(60.0);
    expectClicks({0.0, 7.0});
    store->start();
    platform.loop.runDue();
    expectClicks({0.0, 7.0, 68.0});
}

TEST_F(StoreDesktopTest, ClicksLostWhileTheStartIsToldOfEndTheRun) {
    for (const ClickerStatus moment : {ClickerStatus::idle, ClickerStatus::running}) {
        platform.desktop.set(whole);
        platform.isTrusted = false;
        open(unlimited());
        store->refreshPermission();
        platform.isTrusted = true;
        bool isLost = false;
        const auto lose = [&] {
            if (status() == moment && hasPermission() && !std::exchange(isLost, true)) {
                loseClicks();
            }
        };
        const Subscription permission = store->hasAccessibilityPermission().stream().subscribe([&](bool) { lose(); });
        const Subscription record = store->runtime().stream().subscribe([&](const AutoClickerRuntime&) { lose(); });
        store->start();
        advance(60.0);
        EXPECT_TRUE(isLost);
        EXPECT_EQ(status(), ClickerStatus::idle);
        EXPECT_EQ(runtime().clicksCompleted, 0);
        EXPECT_FALSE(hasPermission());
    }
}

TEST_F(StoreDesktopTest, ListensToThePermissionOfTheMoment) {
    open();
    const auto other = std::make_shared<OtherTrust>();
    other->trusts = false;
    change([&](Desktop& desktop) { desktop.trust.part = other; });
    EXPECT_FALSE(hasPermission());
    EXPECT_FALSE(platform.trustChanged) << "the one before is not listened to any more";
    other->trusts = true;
    ASSERT_TRUE(other->report);
    other->report();
    EXPECT_TRUE(hasPermission());
    EXPECT_TRUE(other->prompts.empty());
}

TEST_F(StoreDesktopTest, OtherPartsLeaveThePermissionAlone) {
    open();
    platform.loop.runDue();
    platform.journal.clear();
    change([](Desktop& desktop) { desktop.pointer = {}; });
    change([](Desktop& desktop) { desktop.clicks.limit = "Slow"; });
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(StoreDesktopTest, PermissionThatComesLateIsAskedForOnce) {
    change([](Desktop& desktop) { desktop.trust = {}; });
    open();
    store->refreshPermission();
    EXPECT_EQ(platform.count("prompt"), 0);
    platform.isTrusted = false;
    platform.desktop.set(whole);
    EXPECT_EQ(platform.count("prompt for trust"), 1) << "the window is up already";
    change([](Desktop& desktop) { desktop.trust = {}; });
    platform.desktop.set(whole);
    EXPECT_EQ(platform.count("prompt for trust"), 1);
}

TEST_F(StoreDesktopTest, PermissionWithoutClicksIsAskedForWithThem) {
    loseClicks();
    open();
    store->refreshPermission();
    platform.isTrusted = false;
    change([this](Desktop& desktop) { desktop.trust = whole.trust; });
    EXPECT_EQ(platform.count("prompt"), 0);
    platform.desktop.set(whole);
    EXPECT_EQ(platform.count("prompt for trust"), 1);
}

TEST_F(StoreDesktopTest, PermissionThatComesBeforeTheWindowIsNotAskedForBeforeIt) {
    change([](Desktop& desktop) { desktop.trust = {}; });
    open();
    platform.isTrusted = false;
    platform.desktop.set(whole);
    EXPECT_EQ(platform.count("prompt"), 0);
}

TEST_F(StoreDesktopTest, PermissionThatIsThereAtLastNeedsNoQuestion) {
    change([](Desktop& desktop) { desktop.trust = {}; });
    open();
    store->refreshPermission();
    platform.desktop.set(whole);
    EXPECT_TRUE(hasPermission());
    EXPECT_EQ(platform.count("prompt"), 0);
}

TEST_F(StoreDesktopTest, HotkeyIsRegisteredWithWhoeverComes) {
    change([](Desktop& desktop) { desktop.hotKeys = {}; });
    open(listening(counted(1)));
    platform.loop.runDue();
    EXPECT_EQ(platform.count("log HotkeyManager: RegisterEventHotKey failed with status -9879"), 1);
    platform.desktop.set(whole);
    EXPECT_EQ(platform.hotKeys.size(), 1U);
    pressHotkey();
    expectClicks({0.0});
    change([](Desktop& desktop) { desktop.hotKeys = {}; });
    EXPECT_TRUE(platform.hotKeys.empty()) << "the one that went is not left with it";
}

TEST_F(StoreDesktopTest, HotkeyIsNotRefusedBeforeItIsKnownWhoRegistersIt) {
    const auto await = [](Desktop& desktop) {
        desktop.hotKeys = {};
        desktop.hotKeys.isAwaited = true;
    };
    const auto refusals = [this] { return platform.count("log HotkeyManager"); };
    change(await);
    open(listening(counted(1)));
    platform.loop.runDue();
    EXPECT_EQ(refusals(), 0);
    platform.desktop.set(whole);
    EXPECT_EQ(platform.hotKeys.size(), 1U);
    pressHotkey();
    expectClicks({0.0});
    change(await);
    EXPECT_TRUE(platform.hotKeys.empty());
    EXPECT_EQ(refusals(), 0);
    change([](Desktop& desktop) { desktop.hotKeys.isAwaited = false; });
    EXPECT_EQ(refusals(), 1) << "nobody came";
}

TEST_F(StoreDesktopTest, HotkeyStaysWhereItIsWhenOthersChange) {
    open(listening(counted(1)));
    platform.loop.runDue();
    change([](Desktop& desktop) { desktop.pointer = {}; });
    loseClicks();
    EXPECT_EQ(platform.count("register key"), 1);
}

TEST_F(StoreDesktopTest, EndOfTheStoreIsTheEndOfFollowing) {
    open(listening(counted(1)));
    platform.loop.runDue();
    store.reset();
    platform.journal.clear();
    platform.desktop.set({});
    EXPECT_TRUE(platform.journal.empty());
}

} // namespace velloran
