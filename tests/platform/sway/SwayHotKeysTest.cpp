#include "platform/sway/SwayHotKeys.h"

#include "platform/wayland/LoopTest.h"
#include "platform/wayland/Sway.h"
#include "platform/wayland/Witness.h"

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace velloran::tests {

using namespace platform;
using sway::SwayHotKeys;

namespace {

/// A key by its stored number and by evdev's.
struct Key {
    std::uint32_t number;
    unsigned code;
};

constexpr Key f8{100, 66};
constexpr Key f9{101, 67};
constexpr Key letterS{1, 31};

constexpr unsigned shiftBit = 1;
constexpr unsigned controlBit = 4;
constexpr unsigned altBit = 8;
constexpr unsigned superBit = 64;
constexpr unsigned capsLockBit = 2;

constexpr HotKeyId ourId{0x564C524E, 1};

} // namespace

class SwayHotKeysTest : public LoopTest {
protected:
    explicit SwayHotKeysTest(const std::string& configuration = "") : sway(configuration) {}

    void SetUp() override {
        ASSERT_TRUE(sway.isUp()) << "sway must be installed";
        witness = std::make_unique<Witness>(sway);
        ASSERT_TRUE(witness->isReady());
        connect();
    }

    void connect() {
        hotKeys = std::make_unique<SwayHotKeys>(loop, sway.commandSocket());
        handler = hotKeys->installHandler([this](const HotKeyEvent* event) {
            fired.push_back(event->hotKeyId);
            return noErr;
        });
    }

    /// Registers and waits for the answer.
    Subscription registered(Key key, std::uint32_t modifiers, HotKeyId id = ourId) {
        answers.clear();
        Subscription result = hotKeys->registerHotKey(
            key.number, modifiers, id, [this](const HotKeyAnswer& answer) { answers.push_back(answer.status); });
        EXPECT_TRUE(until([this] { return !answers.empty(); }));
        return result;
    }

    /// Whether presses are told as often, and not more often once another hot key that came after them was told.
    bool untilFired(std::size_t times) {
        return until([this, times] { return fired.size() >= times; });
    }

    /// Whether the window gets that key, which it does in some time after the hot key has ended.
    bool untilWindowGets(Key key, unsigned modifiers) {
        return until([this, key, modifiers] {
            const std::size_t before = witness->keyPresses();
            witness->tap(key.code, modifiers);
            return witness->keyPresses() > before;
        });
    }

    Sway sway;
    std::unique_ptr<Witness> witness;
    std::unique_ptr<SwayHotKeys> hotKeys;
    Subscription handler;
    std::vector<Status> answers;
    std::vector<HotKeyId> fired;
};

TEST_F(SwayHotKeysTest, FiresOnceAPressAndTheWindowDoesNotSeeTheKey) {
    const Subscription hotKey = registered(f8, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{noErr});
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(2));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, ourId}));
    EXPECT_EQ(witness->keyPresses(), 0U);
    witness->tap(f8.code, 0);
    witness->tap(f8.code, controlBit | shiftBit);
    witness->tap(f9.code, controlBit);
    EXPECT_EQ(witness->keyPresses(), 3U) << "other combinations are nobody's";
    idle();
    EXPECT_EQ(fired.size(), 2U);
}

TEST_F(SwayHotKeysTest, AHeldKeyFiresOnce) {
    ASSERT_TRUE(sway.command("input * repeat_delay 50"));
    ASSERT_TRUE(sway.command("input * repeat_rate 100"));
    const Subscription hotKey = registered(f8, controlModifier);
    witness->press(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    EXPECT_GT(turnsDuring(0.5), 10) << "the repetitions come, and count for nothing";
    EXPECT_EQ(fired.size(), 1U);
    witness->release(f8.code, controlBit);
    idle();
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(2));
}

TEST_F(SwayHotKeysTest, EachModifierIsItsKey) {
    std::vector<Subscription> hotKeysHeld;
    const std::vector<std::pair<std::uint32_t, unsigned>> modifiers{
        {controlModifier, controlBit},
        {optionModifier, altBit},
        {shiftModifier, shiftBit},
        {commandModifier, superBit},
        {controlModifier | optionModifier, controlBit | altBit}};
    for (std::uint32_t i = 0; i < modifiers.size(); ++i) {
        hotKeysHeld.push_back(registered(letterS, modifiers[i].first, {1, i}));
    }
    for (std::uint32_t i = 0; i < modifiers.size(); ++i) {
        fired.clear();
        witness->tap(letterS.code, modifiers[i].second);
        ASSERT_TRUE(untilFired(1)) << i;
        EXPECT_EQ(fired, (std::vector<HotKeyId>{{1, i}}));
    }
}

TEST_F(SwayHotKeysTest, FiresWithCapsLock) {
    const Subscription hotKey = registered(f8, controlModifier);
    witness->tap(f8.code, controlBit | capsLockBit);
    EXPECT_TRUE(untilFired(1));
}

TEST_F(SwayHotKeysTest, TheKeyIsGivenBackWithTheResult) {
    Subscription hotKey = registered(f8, controlModifier);
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    hotKey.cancel();
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
    EXPECT_EQ(fired.size(), 1U);
    const Subscription again = registered(f8, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{noErr});
    witness->tap(f8.code, controlBit);
    EXPECT_TRUE(untilFired(2));
}

TEST_F(SwayHotKeysTest, TheKeyIsGivenBackWithEverything) {
    Subscription hotKey = registered(f8, controlModifier);
    hotKeys.reset();
    const std::size_t before = witness->keyPresses();
    witness->tap(f8.code, controlBit);
    EXPECT_EQ(witness->keyPresses(), before + 1) << "at once";
    hotKey.cancel();
}

TEST_F(SwayHotKeysTest, AReloadIsOutlived) {
    const Subscription hotKey = registered(f8, controlModifier);
    for (std::size_t round = 1; round <= 2; ++round) {
        ASSERT_TRUE(sway.command("reload"));
        const std::size_t before = fired.size();
        ASSERT_TRUE(until([&] {
            witness->tap(f8.code, controlBit);
            return fired.size() > before;
        }));
    }
    idle();
    EXPECT_EQ(answers, std::vector<Status>{noErr}) << "nothing has changed";
}

TEST_F(SwayHotKeysTest, ItsOwnCombinationIsTaken) {
    const Subscription hotKey = registered(f8, controlModifier);
    const Subscription second = registered(f8, controlModifier, {1, 2});
    EXPECT_EQ(answers, std::vector<Status>{hotKeyExistsError});
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    EXPECT_EQ(fired, std::vector<HotKeyId>{ourId});
}

TEST_F(SwayHotKeysTest, AKeyThatIsNoneIsRefused) {
    const Subscription hotKey = registered({0xFFFF, 0}, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{hotKeyInvalidError});
}

TEST_F(SwayHotKeysTest, AnAnswerThatComesTooLateIsNotHeard) {
    sway.pause();
    {
        const Subscription hotKey = hotKeys->registerHotKey(
            f8.number, controlModifier, ourId, [this](const auto& answer) { answers.push_back(answer.status); });
    }
    sway.goOn();
    const Subscription other =
        hotKeys->registerHotKey(f9.number, controlModifier, ourId, [this](const auto&) { fired.push_back({}); });
    ASSERT_TRUE(untilFired(1));
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
}

TEST_F(SwayHotKeysTest, WithItsEndTheHotKeyIsTakenBackOnce) {
    const Subscription hotKey = registered(f8, controlModifier);
    sway.crash();
    ASSERT_TRUE(until([this] { return answers.size() > 1; }));
    idle();
    EXPECT_EQ(answers, (std::vector<Status>{noErr, hotKeyInvalidError}));
    const Subscription second = registered(f9, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{hotKeyInvalidError});
    EXPECT_LT(turnsDuring(0.2), 10) << "a broken connection can be read for ever";
}

TEST_F(SwayHotKeysTest, AnEndThatIsNotAnsweredIsNotWaitedForLong) {
    const Subscription hotKey = registered(f8, controlModifier);
    sway.pause();
    const auto start = std::chrono::steady_clock::now();
    hotKeys.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    sway.goOn();
}

TEST_F(SwayHotKeysTest, WhereNobodyTakesCommandsEverythingIsRefused) {
    SwayHotKeys nowhere(loop, "/no/such/socket");
    std::optional<Status> status;
    const Subscription hotKey = nowhere.registerHotKey(f8.number, controlModifier, ourId,
                                                       [&](const HotKeyAnswer& answer) { status = answer.status; });
    EXPECT_EQ(status, hotKeyInvalidError);
}

} // namespace velloran::tests
