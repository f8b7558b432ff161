#include "platform/portal/PortalHotKeys.h"

#include "platform/portal/RealPortalBench.h"

#include <optional>
#include <vector>

namespace velloran::tests {
namespace {

using platform::HotKeyAnswer;
using platform::hotKeyInvalidError;
using platform::noErr;
using platform::portal::PortalHotKeys;

const HotKeyAnswer refusal{hotKeyInvalidError, {}};

class RealShortcutsTest : public RealPortalBench {
protected:
    RealShortcutsTest() {
        connect();
        hotKeys.emplace(loop, *portal, QStringList(FakeBackEnd::name), nullptr);
        handler = hotKeys->installHandler([this](const platform::HotKeyEvent* event) {
            presses.push_back(event->hotKeyId);
            return noErr;
        });
        EXPECT_TRUE(until([this] { return isOffered(); })) << hotKeys->part().get().reason;
    }

    [[nodiscard]] bool isOffered() const { return hotKeys->part().get().part != nullptr; }

    /// Wants Control and F8.
    void want() {
        registered = hotKeys->registerHotKey(100, platform::controlModifier, {7, 1},
                                             [this](const HotKeyAnswer& answer) { answers.push_back(answer); });
    }

    void bind() {
        want();
        ASSERT_TRUE(until([this] { return !answers.empty(); }));
        ASSERT_EQ(answers, std::vector{HotKeyAnswer()});
    }

    void expectPress(std::size_t count) {
        backEnd->pressShortcut();
        EXPECT_TRUE(until([&] { return presses.size() == count; }));
    }

    std::optional<PortalHotKeys> hotKeys;
    std::vector<HotKeyAnswer> answers;
    std::vector<platform::HotKeyId> presses;
    Subscription handler;
    Subscription registered;
};

TEST_F(RealShortcutsTest, GrantedItFiresUntilItEnds) {
    ASSERT_NO_FATAL_FAILURE(bind());
    EXPECT_EQ(backEnd->shortcut.identifier, "toggle-ctrl-f8");
    EXPECT_EQ(backEnd->shortcut.properties.value("preferred_trigger"), "CTRL+F8");
    EXPECT_EQ(backEnd->shortcut.properties.value("description"), "Start or stop clicking");
    expectPress(1);
    expectPress(2);
    EXPECT_EQ(presses, (std::vector<platform::HotKeyId>{{7, 1}, {7, 1}}));
    registered.cancel();
    EXPECT_TRUE(until([this] { return !backEnd->isShortcutOpen; }));
}

TEST_F(RealShortcutsTest, AnotherKeyIsTold) {
    backEnd->otherTrigger = "Press <Control>F9";
    want();
    ASSERT_TRUE(until([this] { return !answers.empty(); }));
    EXPECT_EQ(answers, std::vector({HotKeyAnswer{noErr, "Press <Control>F9"}}));
    backEnd->changeShortcut("Press F10");
    EXPECT_TRUE(until([this] { return answers.back() == HotKeyAnswer{noErr, "Press F10"}; }));
    backEnd->changeShortcut("Ctrl+F8");
    EXPECT_TRUE(until([this] { return answers.back() == HotKeyAnswer(); }));
    expectPress(1);
}

TEST_F(RealShortcutsTest, TakenAwayItIsNoneUntilItIsGivenBack) {
    ASSERT_NO_FATAL_FAILURE(bind());
    backEnd->removeShortcut();
    ASSERT_TRUE(until([this] { return answers.back() == refusal; }));
    backEnd->changeShortcut("Ctrl+F8");
    ASSERT_TRUE(until([this] { return answers.back() == HotKeyAnswer(); }));
    expectPress(1);
    EXPECT_EQ(backEnd->bindings, 1);
}

TEST_F(RealShortcutsTest, RefusedOrFailedItIsNone) {
    for (const auto manner : {FakeBackEnd::Manner::refuses, FakeBackEnd::Manner::fails}) {
        backEnd->manner = manner;
        answers.clear();
        want();
        ASSERT_TRUE(until([this] { return !answers.empty(); }));
        EXPECT_EQ(answers, std::vector{refusal});
        EXPECT_TRUE(until([this] { return !backEnd->isShortcutOpen; }));
        registered.cancel();
    }
    backEnd->manner = FakeBackEnd::Manner::grants;
    answers.clear();
    ASSERT_NO_FATAL_FAILURE(bind());
}

TEST_F(RealShortcutsTest, TheTruthIsInTheResultsAndInTheList) {
    using Binding = FakeBackEnd::Binding;
    for (const auto binding : {Binding::saidToFail, Binding::saidToFailWithoutAWord, Binding::unsaid}) {
        backEnd->binding = binding;
        answers.clear();
        ASSERT_NO_FATAL_FAILURE(bind()) << static_cast<int>(binding);
        expectPress(presses.size() + 1);
        registered.cancel();
    }
    backEnd->binding = Binding::none;
    answers.clear();
    want();
    ASSERT_TRUE(until([this] { return !answers.empty(); }));
    EXPECT_EQ(answers, std::vector{refusal});
}

TEST_F(RealShortcutsTest, QuestionWithoutAnAnswerIsWithdrawnWithItsHotkey) {
    backEnd->manner = FakeBackEnd::Manner::hangs;
    want();
    ASSERT_TRUE(until([this] { return backEnd->bindings == 1; }));
    EXPECT_TRUE(answers.empty());
    registered.cancel();
    EXPECT_TRUE(until([this] { return backEnd->withdrawn == 1; }));
    EXPECT_TRUE(until([this] { return !backEnd->isShortcutOpen; }));
}

TEST_F(RealShortcutsTest, ClosedByTheDesktopItIsTakenBack) {
    ASSERT_NO_FATAL_FAILURE(bind());
    backEnd->closeShortcut();
    ASSERT_TRUE(until([this] { return answers.back() == refusal; }));
    EXPECT_EQ(backEnd->bindings, 1) << "nobody is asked by itself";
}

TEST_F(RealShortcutsTest, KilledPortalTakesItAndTheNextBindsItAgain) {
    ASSERT_NO_FATAL_FAILURE(bind());
    killPortal();
    ASSERT_TRUE(until([this] { return answers.back() == refusal && !isOffered(); }));
    startPortal();
    ASSERT_TRUE(until([this] { return answers.back() == HotKeyAnswer(); }));
    EXPECT_EQ(backEnd->bindings, 2);
    expectPress(1);
}

TEST_F(RealShortcutsTest, KilledBackEndTakesItAndTheNextBindsItAgain) {
    ASSERT_NO_FATAL_FAILURE(bind());
    backEnd.reset();
    ASSERT_TRUE(until([this] { return answers.back() == refusal; })) << "although the portal says nothing";
    EXPECT_TRUE(isOffered());
    backEnd.emplace(bus.address());
    ASSERT_TRUE(until([this] { return answers.back() == HotKeyAnswer(); }));
    EXPECT_EQ(backEnd->bindings, 1);
    expectPress(1);
}

TEST_F(RealShortcutsTest, BackEndThatIsReplacedAtOnceBindsItToo) {
    ASSERT_NO_FATAL_FAILURE(bind());
    backEnd.reset();
    backEnd.emplace(bus.address());
    ASSERT_TRUE(until([this] { return backEnd->bindings == 1 && answers.back() == HotKeyAnswer(); }));
    expectPress(1);
}

TEST_F(RealShortcutsTest, IsKnownByNameWhereThePortalTakesNames) {
    ASSERT_NO_FATAL_FAILURE(bind());
    EXPECT_EQ(backEnd->programs.last(),
              portal->nameError().isEmpty() ? QStringLiteral("app.velloran.Velloran") : QString());
}

} // namespace
} // namespace velloran::tests
