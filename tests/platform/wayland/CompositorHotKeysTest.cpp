#include "platform/wayland/CompositorHotKeys.h"

#include "keys/KeyboardLayout.h"
#include "platform/wayland/FakeHotKeys.h"
#include "platform/wayland/LoopTest.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

using namespace std::chrono_literals;
using platform::HotKeyAnswer;
using platform::HotKeyEvent;
using platform::HotKeyId;
using platform::Status;
using platform::wayland::CompositorHotKeys;
using Protocol = FakeHotKeys::Protocol;

namespace {

constexpr std::uint32_t keyOfB = 11;
constexpr std::uint32_t keyOfY = 16;
constexpr std::uint32_t keyOfF6 = 97;
constexpr HotKeyId ours{1, 7};
constexpr std::uint32_t alreadyBound = 0;
constexpr std::uint32_t notPermitted = 1;
constexpr std::uint32_t superseded = 1;

std::optional<keys::KeyboardLayout> layoutOf(const std::string& name) {
    keys::LayoutNames names;
    names.layout = name;
    auto read = keys::KeyboardLayout::fromNames(names);
    return read ? std::optional(std::move(read).value()) : std::nullopt;
}

} // namespace

/// The hot keys of a compositor that does what the test wants; each test with either protocol.
class CompositorHotKeysTest : public LoopTest, public testing::WithParamInterface<Protocol> {
protected:
    void SetUp() override {
        std::string folderName = testing::TempDir() + "velloran-hotkeys-XXXXXX";
        folder_ = mkdtemp(folderName.data());
        begin();
    }

    void TearDown() override {
        registration.cancel();
        hotKeys.reset();
        compositor.reset();
        offered.reset();
        std::filesystem::remove_all(folder_);
    }

    void begin() {
        compositor = std::make_unique<FakeCompositor>(loop, folder_ + "/socket");
        offered = std::make_unique<FakeHotKeys>(*compositor);
    }

    void crash() {
        // Its clients end before what they had is forgotten.
        compositor.reset();
        offered.reset();
    }

    void connect() {
        hotKeys = std::make_unique<CompositorHotKeys>(loop, folder_ + "/socket",
                                                      [this] { return layout ? &*layout : nullptr; });
    }

    void connectToUsualCompositor() {
        offered->offer(GetParam());
        connect();
        ASSERT_TRUE(untilOffered());
        handling = hotKeys->installHandler([this](const HotKeyEvent* event) {
            EXPECT_EQ(event->hotKeyId, ours);
            ++presses;
            return platform::noErr;
        });
    }

    bool untilOffered() {
        return until([this] { return hotKeys->parts().get().hotKeys.part != nullptr; });
    }

    void ask(std::uint32_t keyCode = keyOfB, std::uint32_t modifiers = platform::controlModifier) {
        registration = hotKeys->registerHotKey(keyCode, modifiers, ours, [this](const HotKeyAnswer& answer) {
            EXPECT_EQ(answer, (HotKeyAnswer{answer.status, {}}));
            answers.push_back(answer.status);
        });
    }

    /// Whether there are that many, of which the last is by that symbol, if one is named.
    bool untilAsked(std::size_t number = 1, std::uint32_t symbol = 0) {
        return until([this, number, symbol] {
            return offered->hotKeys.size() == number && offered->hotKeys.back().isCommitted &&
                   (symbol == 0 || offered->hotKeys.back().symbol == symbol);
        });
    }

    bool untilAnswered(std::size_t number) {
        return until([this, number] { return answers.size() >= number; });
    }

    void askAndBind() {
        ask();
        ASSERT_TRUE(untilAsked());
        offered->bind();
        ASSERT_TRUE(untilAnswered(1));
        ASSERT_EQ(answers.back(), platform::noErr);
    }

    std::unique_ptr<FakeCompositor> compositor;
    std::unique_ptr<FakeHotKeys> offered;
    std::optional<keys::KeyboardLayout> layout;
    std::unique_ptr<CompositorHotKeys> hotKeys;
    Subscription registration;
    Subscription handling;
    std::vector<Status> answers;
    int presses = 0;

private:
    std::string folder_;
};

INSTANTIATE_TEST_SUITE_P(Protocols, CompositorHotKeysTest, testing::Values(Protocol::xx, Protocol::vicinae),
                         [](const auto& parameter) {
                             return std::string(parameter.param == Protocol::xx ? "Xx" : "Vicinae");
                         });

TEST_P(CompositorHotKeysTest, IsAskedForByTheSymbolThatTheKeyGivesByItself) {
    connectToUsualCompositor();
    ask(keyOfB, platform::controlModifier | platform::shiftModifier);
    ASSERT_TRUE(untilAsked());
    const auto& asked = offered->hotKeys.back();
    EXPECT_EQ(asked.symbol, std::uint32_t{'b'});
    EXPECT_EQ(asked.modifiers, 3U);
    EXPECT_EQ(asked.application, "app.velloran.Velloran");
    EXPECT_EQ(asked.description, "Start or stop clicking");
    EXPECT_TRUE(answers.empty());
    registration.cancel();
    ASSERT_TRUE(until([this] { return offered->hotKeys.empty(); }));
    ask(keyOfF6, platform::optionModifier | platform::commandModifier);
    ASSERT_TRUE(untilAsked());
    EXPECT_EQ(offered->hotKeys.back().symbol, 0xffc3U);
    EXPECT_EQ(offered->hotKeys.back().modifiers, 12U);
}

TEST_P(CompositorHotKeysTest, FiresOnceForEachPressHoweverLongItIsHeld) {
    connectToUsualCompositor();
    askAndBind();
    offered->press();
    offered->press();
    offered->press();
    ASSERT_TRUE(until([this] { return presses > 0; }));
    offered->release();
    offered->press();
    ASSERT_TRUE(until([this] { return presses > 1; }));
    idle();
    EXPECT_EQ(presses, 2);
    EXPECT_EQ(answers, std::vector<Status>{platform::noErr});
}

TEST_P(CompositorHotKeysTest, OneThatIsTakenIsRefusedAndGivenBack) {
    connectToUsualCompositor();
    ask();
    ASSERT_TRUE(untilAsked());
    offered->deny(alreadyBound);
    ASSERT_TRUE(untilAnswered(1));
    EXPECT_EQ(answers, std::vector<Status>{platform::hotKeyExistsError});
    EXPECT_TRUE(until([this] { return offered->hotKeys.empty(); }));
    ask();
    EXPECT_TRUE(untilAsked()) << "whoever wants it again may ask again";
}

TEST_P(CompositorHotKeysTest, OneThatIsNotPermittedIsRefused) {
    connectToUsualCompositor();
    ask();
    ASSERT_TRUE(untilAsked());
    offered->deny(notPermitted);
    ASSERT_TRUE(untilAnswered(1));
    EXPECT_EQ(answers, std::vector<Status>{platform::hotKeyInvalidError});
}

TEST_P(CompositorHotKeysTest, LateAnswersToOneThatHasEndedAreNotHeard) {
    connectToUsualCompositor();
    ask();
    ASSERT_TRUE(untilAsked());
    // On its way while the client gives it back.
    offered->bind();
    offered->press();
    registration.cancel();
    ask(keyOfY);
    ASSERT_TRUE(untilAsked(1, std::uint32_t{'y'}));
    idle();
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(presses, 0);
    offered->bind();
    ASSERT_TRUE(untilAnswered(1));
    EXPECT_EQ(answers, std::vector<Status>{platform::noErr});
}

TEST_P(CompositorHotKeysTest, OneThatIsTakenBackIsNotAskedForAgainByItself) {
    connectToUsualCompositor();
    ask(keyOfY);
    ASSERT_TRUE(untilAsked());
    offered->bind();
    ASSERT_TRUE(untilAnswered(1));
    offered->revoke();
    ASSERT_TRUE(untilAnswered(2));
    EXPECT_EQ(answers.back(), platform::hotKeyInvalidError);
    EXPECT_TRUE(until([this] { return offered->hotKeys.empty(); }));
    layout = layoutOf("de");
    hotKeys->followLayout();
    idle();
    EXPECT_TRUE(offered->hotKeys.empty());
    registration.cancel();
    ask();
    EXPECT_TRUE(untilAsked());
}

TEST_P(CompositorHotKeysTest, OneThatIsTakenByAnotherIsTakenBack) {
    connectToUsualCompositor();
    askAndBind();
    offered->revoke(superseded);
    ASSERT_TRUE(untilAnswered(2));
    EXPECT_EQ(answers.back(),
              GetParam() == Protocol::vicinae ? platform::hotKeyExistsError : platform::hotKeyInvalidError);
}

TEST_P(CompositorHotKeysTest, AnotherLayoutHasItAskedForAnew) {
    layout = layoutOf("us");
    connectToUsualCompositor();
    ask(keyOfY);
    ASSERT_TRUE(untilAsked());
    offered->bind();
    ASSERT_TRUE(untilAnswered(1));
    hotKeys->followLayout();
    idle();
    ASSERT_EQ(offered->hotKeys.size(), 1U);
    wl_resource* const before = offered->hotKeys.back().resource;
    EXPECT_EQ(offered->hotKeys.back().symbol, std::uint32_t{'y'});
    layout = layoutOf("de");
    hotKeys->followLayout();
    ASSERT_TRUE(untilAsked(1, std::uint32_t{'z'}));
    EXPECT_NE(offered->hotKeys.back().resource, before);
    offered->deny(alreadyBound);
    ASSERT_TRUE(untilAnswered(2));
    EXPECT_EQ(answers.back(), platform::hotKeyExistsError);
    layout = layoutOf("us");
    hotKeys->followLayout();
    ASSERT_TRUE(untilAsked(1, std::uint32_t{'y'}));
    offered->bind();
    ASSERT_TRUE(untilAnswered(3));
    EXPECT_EQ(answers.back(), platform::noErr);
}

TEST_P(CompositorHotKeysTest, WhatCannotBeHadIsRefusedAtOnce) {
    connectToUsualCompositor();
    ask(0xffffU);
    EXPECT_EQ(answers, std::vector<Status>{platform::hotKeyInvalidError});
    ask();
    const Subscription twice =
        hotKeys->registerHotKey(keyOfB, platform::controlModifier, {1, 8},
                                [this](const HotKeyAnswer& answer) { answers.push_back(answer.status); });
    EXPECT_EQ(answers.back(), platform::hotKeyExistsError) << "it is this program's own";
}

TEST_P(CompositorHotKeysTest, ACompositorThatEndsTakesItAlong) {
    connectToUsualCompositor();
    askAndBind();
    crash();
    ASSERT_TRUE(untilAnswered(2));
    EXPECT_EQ(answers.back(), platform::hotKeyInvalidError);
    EXPECT_EQ(hotKeys->parts().get(), platform::Desktop());
    ask(keyOfF6);
    EXPECT_EQ(answers.back(), platform::hotKeyInvalidError);
    idle();
    EXPECT_EQ(answers.size(), 3U);
    EXPECT_LT(turnsDuring(0.2), 10) << "a broken connection can be read for ever";
}

TEST_P(CompositorHotKeysTest, ACompositorThatComesBackBindsItAgain) {
    connectToUsualCompositor();
    askAndBind();
    crash();
    ASSERT_TRUE(untilAnswered(2));
    begin();
    offered->offer(GetParam());
    ASSERT_TRUE(untilOffered());
    ASSERT_TRUE(untilAsked());
    offered->bind();
    ASSERT_TRUE(untilAnswered(3));
    EXPECT_EQ(answers.back(), platform::noErr);
    offered->press();
    EXPECT_TRUE(until([this] { return presses == 1; }));
}

TEST_P(CompositorHotKeysTest, ACompositorThatComesLateIsFollowed) {
    crash();
    connect();
    EXPECT_EQ(hotKeys->parts().get(), platform::Desktop()) << "there is none";
    begin();
    offered->offer(GetParam());
    EXPECT_TRUE(untilOffered());
}

TEST_P(CompositorHotKeysTest, ACompositorThatAnswersLateIsAwaited) {
    offered->offer(GetParam());
    compositor->pause();
    connect();
    hotKeys->waitForOffer(20ms);
    EXPECT_TRUE(hotKeys->parts().get().hotKeys.isAwaited);
    EXPECT_EQ(hotKeys->parts().get().hotKeys.part, nullptr);
    compositor->goOn();
    ASSERT_TRUE(untilOffered());
    EXPECT_FALSE(hotKeys->parts().get().hotKeys.isAwaited);
    EXPECT_EQ(hotKeys->parts().get().hotKeys.reason,
              "The hotkey is bound by the compositor, which lets programs ask for some.");
}

TEST_P(CompositorHotKeysTest, WhatIsOfferedLaterOrNoMoreIsFollowed) {
    connect();
    ASSERT_TRUE(until([this] { return hotKeys->parts().get() == platform::Desktop(); })) << "nothing is offered";
    offered->offer(GetParam());
    ASSERT_TRUE(untilOffered());
    askAndBind();
    offered->withdraw(GetParam());
    ASSERT_TRUE(untilAnswered(2));
    EXPECT_EQ(answers.back(), platform::hotKeyInvalidError);
    EXPECT_EQ(hotKeys->parts().get(), platform::Desktop());
    EXPECT_TRUE(until([this] { return offered->hotKeys.empty(); }));
    offered->offer(GetParam());
    ASSERT_TRUE(untilAsked());
    offered->bind();
    ASSERT_TRUE(untilAnswered(3));
}

TEST_P(CompositorHotKeysTest, WhoeverIsToldMayEndIt) {
    connectToUsualCompositor();
    for (const bool isGranted : {true, false}) {
        bool isTold = false;
        registration = hotKeys->registerHotKey(keyOfB, platform::controlModifier, ours, [&](const HotKeyAnswer&) {
            registration.cancel();
            isTold = true;
        });
        ASSERT_TRUE(untilAsked());
        isGranted ? offered->bind() : offered->deny(notPermitted);
        ASSERT_TRUE(until([&] { return isTold; }));
        EXPECT_TRUE(until([this] { return offered->hotKeys.empty(); }));
    }
}

TEST_P(CompositorHotKeysTest, ACompositorThatEndsTheConnectionAgainAndAgainIsLeftAlone) {
    connectToUsualCompositor();
    for (int losses = 1; losses <= 3; ++losses) {
        ASSERT_TRUE(untilOffered());
        compositor->endClients();
        ASSERT_TRUE(until([this] { return hotKeys->parts().get() == platform::Desktop(); }));
    }
    EXPECT_FALSE(until([this] { return hotKeys->parts().get() != platform::Desktop(); }, 1.5));
}

/// Both protocols at once.
class BothHotKeyProtocolsTest : public CompositorHotKeysTest {};

INSTANTIATE_TEST_SUITE_P(Orders, BothHotKeyProtocolsTest, testing::Values(Protocol::xx, Protocol::vicinae));

TEST_P(BothHotKeyProtocolsTest, TheNewerOneIsUsedAndTheOtherStandsIn) {
    offered->offer(GetParam());
    offered->offer(GetParam() == Protocol::xx ? Protocol::vicinae : Protocol::xx);
    connect();
    ASSERT_TRUE(untilOffered());
    askAndBind();
    EXPECT_EQ(offered->hotKeys.back().protocol, Protocol::xx);
    offered->withdraw(Protocol::xx);
    ASSERT_TRUE(until(
        [this] { return offered->hotKeys.size() == 1 && offered->hotKeys.back().protocol == Protocol::vicinae; }));
    EXPECT_NE(hotKeys->parts().get().hotKeys.part, nullptr);
    offered->bind();
    EXPECT_TRUE(untilAnswered(3));
}

} // namespace velloran::tests
