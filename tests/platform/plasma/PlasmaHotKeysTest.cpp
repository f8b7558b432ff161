#include "platform/plasma/PlasmaHotKeys.h"

#include "platform/plasma/PlasmaBench.h"

#include <memory>
#include <vector>

namespace velloran::tests {
namespace {

using platform::controlModifier;
using platform::HotKeyAnswer;
using platform::HotKeyEvent;
using platform::hotKeyExistsError;
using platform::HotKeyId;
using platform::hotKeyInvalidError;
using platform::noErr;
using platform::shiftModifier;
using platform::plasma::PlasmaHotKeys;

constexpr std::uint32_t codeOfS = 1;
constexpr std::uint32_t codeOfZ = 6;
constexpr std::uint32_t codeOf5 = 23;
constexpr std::uint32_t codeOfF8 = 100;
constexpr int control = Qt::ControlModifier;
constexpr HotKeyId firstId{7, 1};
constexpr HotKeyId secondId{7, 2};
const HotKeyAnswer refusal{hotKeyInvalidError, {}};

class PlasmaHotKeysTest : public PlasmaBench {
protected:
    /// One registration, and what it was told.
    struct Hotkey {
        std::vector<HotKeyAnswer> answers;
        Subscription registered;

        [[nodiscard]] HotKeyAnswer last() const { return answers.empty() ? HotKeyAnswer{99, {}} : answers.back(); }
    };

    void bring() {
        fake.emplace(bus.address());
        ASSERT_TRUE(until([this] { return hotKeys->part().get().part != nullptr; }));
    }

    void want(Hotkey& hotkey, std::uint32_t key = codeOfF8, std::uint32_t modifiers = controlModifier,
              HotKeyId id = firstId) {
        hotkey.registered.cancel();
        hotkey.registered = hotKeys->registerHotKey(
            key, modifiers, id, [&hotkey](const HotKeyAnswer& answer) { hotkey.answers.push_back(answer); });
    }

    void bind(Hotkey& hotkey, std::uint32_t key = codeOfF8) {
        want(hotkey, key);
        ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    }

    void press() {
        fake->press();
        settle(fake->service);
    }

    std::optional<keys::KeyboardLayout> layout = layoutCalled("us,de");
    std::unique_ptr<PlasmaHotKeys> hotKeys =
        std::make_unique<PlasmaHotKeys>(loop, session, [this] { return layout ? &*layout : nullptr; });
    std::optional<FakeShortcuts> fake;
    std::vector<HotKeyId> presses;
    Subscription handler = hotKeys->installHandler([this](const HotKeyEvent* event) {
        presses.push_back(event->hotKeyId);
        return noErr;
    });
};

TEST_F(PlasmaHotKeysTest, AreThereFromWhenTheServiceIsSeen) {
    EXPECT_TRUE(hotKeys->part().get().isAwaited);
    EXPECT_NE(hotKeys->part().get().reason, "");
    ASSERT_TRUE(until([this] { return !hotKeys->part().get().isAwaited; }));
    EXPECT_EQ(hotKeys->part().get().part, nullptr);
    EXPECT_EQ(hotKeys->part().get().limit, "The global hotkey does not work here.");
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_EQ(hotKeys->part().get().reason, "The hotkey is a shortcut of Plasma's, which lets programs register some.");
    EXPECT_EQ(hotKeys->part().get().limit, "");
    fake.reset();
    Hotkey waiting;
    want(waiting);
    EXPECT_NE(hotKeys->part().get().part, nullptr) << "another must not take its place while it starts anew";
}

TEST_F(PlasmaHotKeysTest, AreAwaitedForHalfAMinuteAtMost) {
    bus.holdStill();
    PlasmaHotKeys asking(loop, session, nullptr);
    loop.advance(29);
    EXPECT_TRUE(asking.part().get().isAwaited);
    loop.advance(2);
    EXPECT_FALSE(asking.part().get().isAwaited);
    bus.goOn();
    fake.emplace(bus.address());
    EXPECT_TRUE(until([&] { return asking.part().get().part != nullptr; })) << "it is heard all the same";
}

TEST_F(PlasmaHotKeysTest, IsRegisteredByItsNamesAndSymbol) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, codeOfS));
    EXPECT_EQ(fake->keys(), QList<int>{control | Qt::Key_S});
    EXPECT_EQ(fake->identity, QStringList({"app.velloran.Velloran", "toggle", "Velloran", "Start or stop clicking"}));
    EXPECT_EQ(fake->flags, 6U) << "present, and not what the user once had";
}

TEST_F(PlasmaHotKeysTest, FiresOnceForAPressHoweverLongItIsHeld) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    press();
    press();
    press();
    EXPECT_EQ(presses, std::vector{firstId});
    fake->release();
    press();
    EXPECT_EQ(presses.size(), 2U);
    loop.advance(4);
    press();
    EXPECT_EQ(presses.size(), 3U) << "the release went unheard";
}

TEST_F(PlasmaHotKeysTest, OnlyTheServiceFiresAndOnlyWhatIsBound) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    FakeService other(bus.address(), "org.example.Other", [](const auto&, const auto&) { return QVariantList(); });
    other.signal("/component/app_velloran_Velloran", "org.kde.kglobalaccel.Component", "globalShortcutPressed",
                 {QStringLiteral("app.velloran.Velloran"), QStringLiteral("toggle"), qlonglong{1}});
    settle(other);
    fake->press("toggle-2");
    settle(fake->service);
    EXPECT_TRUE(presses.empty());
    hotkey.registered.cancel();
    press();
    EXPECT_TRUE(presses.empty());
}

TEST_F(PlasmaHotKeysTest, TakenOneIsRefusedWithItsHolder) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->taken[control | Qt::Key_F8] = {"Show Desktop", "KWin"};
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    HotKeyAnswer taken{hotKeyExistsError, {}};
    taken.holder = "KWin (Show Desktop)";
    EXPECT_EQ(hotkey.answers, std::vector{taken});
    EXPECT_FALSE(fake->service.calls.contains("setShortcutKeys")) << "it would be taken away";
    hotkey.registered.cancel();
    fake->taken.clear();
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
}

TEST_F(PlasmaHotKeysTest, AllThatAPressMayBeHasToBeFree) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->taken[control | Qt::Key_Percent] = {"Zoom", "KWin"};
    Hotkey hotkey;
    want(hotkey, codeOf5, controlModifier | shiftModifier);
    ASSERT_TRUE(until([&] { return hotkey.last().status == hotKeyExistsError; }));
    EXPECT_EQ(hotkey.last().holder, "KWin (Zoom)");
}

TEST_F(PlasmaHotKeysTest, OneThatIsLostToAnotherMeanwhileIsTaken) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->lost.append(control | Qt::Key_F8);
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector({HotKeyAnswer{hotKeyExistsError, {}}}));
    EXPECT_TRUE(until([this] { return fake->bound.isEmpty(); }));
}

TEST_F(PlasmaHotKeysTest, WhatCannotBeIsRefused) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey noKey;
    want(noKey, 999);
    EXPECT_EQ(noKey.answers, std::vector{refusal}) << "at once";
    for (const QString method : {"globalShortcutAvailable", "setShortcutKeys"}) {
        fake->refusedMethods = QStringList(method);
        Hotkey hotkey;
        want(hotkey);
        ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
        EXPECT_EQ(hotkey.answers, std::vector{refusal}) << method.toStdString();
    }
}

TEST_F(PlasmaHotKeysTest, TwoAreToldApartAndNeitherIsHadTwice) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey first;
    ASSERT_NO_FATAL_FAILURE(bind(first));
    Hotkey same;
    want(same, codeOfF8, controlModifier, secondId);
    EXPECT_EQ(same.answers, std::vector({HotKeyAnswer{hotKeyExistsError, {}}}));
    Hotkey second;
    want(second, codeOfS, controlModifier, secondId);
    ASSERT_TRUE(until([&] { return second.last() == HotKeyAnswer(); }));
    fake->press("toggle-2");
    settle(fake->service);
    EXPECT_EQ(presses, std::vector{secondId});
}

TEST_F(PlasmaHotKeysTest, IsGivenBackWhenNobodyWantsItAndAtTheEnd) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    hotkey.registered.cancel();
    EXPECT_TRUE(until([this] { return fake->bound.isEmpty(); }));
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    hotKeys.reset();
    EXPECT_TRUE(until([this] { return fake->bound.isEmpty(); }));
}

TEST_F(PlasmaHotKeysTest, LateAnswersToOneThatWasReplacedAreIgnored) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->service.isSilent = true;
    fake->taken[control | Qt::Key_F8] = {"Show Desktop", "KWin"};
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([this] { return !fake->service.unanswered.isEmpty(); }));
    want(hotkey, codeOfS);
    ASSERT_TRUE(until([this] { return fake->service.unanswered.size() == 2; }));
    fake->service.goOn();
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    settle(fake->service);
    EXPECT_EQ(hotkey.answers, std::vector{HotKeyAnswer()});
    EXPECT_EQ(fake->keys(), QList<int>{control | Qt::Key_S});
}

TEST_F(PlasmaHotKeysTest, AnotherLayoutHasItBoundAnew) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, codeOfZ));
    EXPECT_EQ(fake->keys(), QList<int>{control | Qt::Key_Z});
    layout = layoutCalled("de");
    hotKeys->followLayout();
    EXPECT_TRUE(until([this] { return fake->keys() == QList<int>{control | Qt::Key_Y}; }));
    const auto calls = fake->service.calls;
    hotKeys->followLayout();
    settle(fake->service);
    EXPECT_EQ(fake->service.calls, calls) << "it gives the same";
    EXPECT_EQ(hotkey.answers.size(), 1U);
    press();
    EXPECT_EQ(presses.size(), 1U);
}

TEST_F(PlasmaHotKeysTest, AnswersInAnEarlierLayoutAreIgnored) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->service.isSilent = true;
    fake->taken[control | Qt::Key_Y] = {"Redo", "KWin"};
    Hotkey hotkey;
    want(hotkey, codeOfZ);
    layout = layoutCalled("de");
    hotKeys->followLayout();
    ASSERT_TRUE(until([this] { return fake->service.unanswered.size() == 2; }));
    fake->service.goOn();
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.last().status, hotKeyExistsError);
    EXPECT_FALSE(fake->service.calls.contains("setShortcutKeys")) << "that the other was free says nothing of this";
}

TEST_F(PlasmaHotKeysTest, TakenInAnotherLayoutItIsBackWithTheFirst) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->taken[control | Qt::Key_Y] = {"Redo", "KWin"};
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, codeOfZ));
    layout = layoutCalled("de");
    hotKeys->followLayout();
    ASSERT_TRUE(until([&] { return hotkey.last().status == hotKeyExistsError; }));
    EXPECT_TRUE(until([this] { return fake->bound.isEmpty(); })) << "it would be another key of the keyboard's";
    layout = layoutCalled("us");
    hotKeys->followLayout();
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    EXPECT_EQ(fake->keys(), QList<int>{control | Qt::Key_Z});
}

TEST_F(PlasmaHotKeysTest, FollowsTheLayoutThatIsActive) {
    quint32 group = 1;
    FakeService keyboard(bus.address(), "org.kde.keyboard",
                         [&group](const QString&, const QVariantList&) { return QVariantList{group}; });
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, codeOfZ));
    EXPECT_TRUE(until([this] { return fake->keys() == QList<int>{control | Qt::Key_Y}; }));
    group = 0;
    keyboard.signal("/Layouts", "org.kde.KeyboardLayouts", "layoutChanged", {0U});
    EXPECT_TRUE(until([this] { return fake->keys() == QList<int>{control | Qt::Key_Z}; }));
    EXPECT_EQ(hotkey.answers.size(), 1U);
}

TEST_F(PlasmaHotKeysTest, WithoutALayoutItIsTheDefaultOne) {
    layout.reset();
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    EXPECT_EQ(fake->keys(), QList<int>{control | Qt::Key_F8});
}

TEST_F(PlasmaHotKeysTest, ServiceThatStartsAnewHasItRegisteredAgain) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    press();
    fake.reset();
    ASSERT_TRUE(until([&] { return hotkey.last() == refusal; }));
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    EXPECT_EQ(fake->keys(), QList<int>{control | Qt::Key_F8});
    press();
    EXPECT_EQ(presses.size(), 2U) << "it is not held any more";
    EXPECT_EQ(hotkey.answers.size(), 3U);
}

TEST_F(PlasmaHotKeysTest, ServiceThatGoesBeforeItAnswersIsWaitedFor) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->service.isSilent = true;
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([this] { return !fake->service.unanswered.isEmpty(); }));
    fake.reset();
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    EXPECT_EQ(hotkey.answers.size(), 1U);
}

TEST_F(PlasmaHotKeysTest, BusThatStartsAnewHasItRegisteredAgain) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    bus.end();
    ASSERT_TRUE(until([&] { return hotkey.last() == refusal; }));
    fake.reset();
    bus.start();
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    press();
    EXPECT_EQ(presses.size(), 1U);
}

TEST_F(PlasmaHotKeysTest, WhatTheUserChoosesInTheSettingsIsTold) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    fake->choose({control | Qt::Key_F9});
    ASSERT_TRUE(until([&] { return hotkey.last().otherTrigger == "Ctrl+F9"; }));
    EXPECT_EQ(hotkey.last().status, noErr);
    fake->choose({});
    ASSERT_TRUE(until([&] { return hotkey.last().hasNoTrigger; }));
    fake->choose({control | Qt::Key_F8});
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
}

} // namespace
} // namespace velloran::tests
