#include "followServices.h"

#include "fakes/RecordingPlatform.h"
#include "harness/PrivateServer.h"
#include "platform/InputTrust.h"
#include "platform/KeyCharacters.h"
#include "platform/PointerEvents.h"
#include "platform/wayland/Sway.h"
#include "realBackends.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velloran {

namespace {

using platform::Desktop;
using Variables = std::map<std::string, std::string>;

const std::string onWayland = "Input cannot be posted: this is a Wayland session, and an X server inside it reaches "
                              "only some windows.";
const std::string nowhere = "Input cannot be posted: there is no display.";

struct SilentKeys final : platform::KeyCharacters {
    std::optional<std::string> charactersIgnoringModifiers(std::uint32_t, bool) override { return std::nullopt; }
};

class ChooseDesktopTest : public testing::Test {
protected:
    ChooseDesktopTest() {
        whole.clicks.reason = "it clicks";
        whole.keyCharacters.part = std::make_shared<SilentKeys>();
    }

    Desktop choose(const Variables& variables) {
        const Environment environment = [&variables](const char* name) {
            const auto found = variables.find(name);
            return found != variables.end() ? std::optional(found->second) : std::nullopt;
        };
        return chooseDesktop(environment, backends);
    }

    /// The parts of the X server, as it told of them.
    void expectX11(const Variables& variables) {
        const int before = connections;
        EXPECT_EQ(choose(variables), whole);
        EXPECT_EQ(connections, before + 1);
    }

    /// No part at all, and an X server that nobody has asked.
    void expectNothing(const Variables& variables, const std::string& why) {
        expectMissing(choose(variables), why);
        EXPECT_EQ(connections, 0);
    }

    static void expectMissing(const Desktop& desktop, const std::string& why) {
        EXPECT_EQ(desktop.clicks.part, nullptr);
        EXPECT_EQ(desktop.clicks.reason, why);
        EXPECT_EQ(desktop.clicks.limit, why);
        EXPECT_EQ(desktop.trust.part, nullptr);
        EXPECT_FALSE(desktop.trust.reason.empty());
        EXPECT_EQ(desktop.pointer.part, nullptr);
        EXPECT_FALSE(desktop.pointer.reason.empty());
        EXPECT_EQ(desktop.pointer.limit,
                  "The pointer's position is not known here, so the still-mouse rule never lets a click through.");
        EXPECT_EQ(desktop.hotKeys.part, nullptr);
        EXPECT_FALSE(desktop.hotKeys.reason.empty());
        EXPECT_EQ(desktop.hotKeys.limit, "The global hotkey does not work here.");
        EXPECT_EQ(desktop.keyCharacters.part, nullptr);
        EXPECT_FALSE(desktop.keyCharacters.reason.empty());
        EXPECT_EQ(desktop.keyCharacters.limit, "") << "the default layout will do";
    }

    fakes::RecordingPlatform platform;
    Desktop whole = platform.desktop.get();
    int connections = 0;
    /// What the compositor has, and the names by which it was asked.
    Result<Desktop> ofCompositor = Error{"it gives no pointer"};
    std::vector<std::string> compositors;
    Desktop ofSway;
    Desktop ofEveryCompositor;
    std::shared_ptr<Published<Desktop>> portal = std::make_shared<Published<Desktop>>(Desktop{});
    int portals = 0;
    std::shared_ptr<Published<Desktop>> plasma;
    std::shared_ptr<Published<Desktop>> gnome;
    int gnomes = 0;
    std::shared_ptr<Published<Desktop>> compositorKeys;
    std::shared_ptr<Published<Desktop>> hyprland;
    std::vector<std::string> hyprlands;
    Backends backends{.x11 = [this]() -> Result<Desktop> {
                          ++connections;
                          return whole;
                      },
                      .virtualPointer =
                          [this](const std::string& compositor) {
                              compositors.push_back(compositor);
                              return ofCompositor;
                          },
                      .sway = [this](const std::string& compositor, const std::string& socket) -> Result<Desktop> {
                          compositors.push_back(compositor + " by " + socket);
                          return ofSway;
                      },
                      .compositor = [this](const std::string&) -> Result<Desktop> { return ofEveryCompositor; },
                      .compositorHotKeys =
                          [this](const std::string& compositor) {
                              compositors.push_back("keys of " + compositor);
                              return compositorKeys;
                          },
                      .hyprland =
                          [this](const std::string& compositor, const std::string& folder) {
                              hyprlands.push_back(compositor + " in " + folder);
                              return hyprland;
                          },
                      .plasma = [this] { return plasma; },
                      .portal =
                          [this] {
                              ++portals;
                              return portal;
                          },
                      .gnome =
                          [this] {
                              ++gnomes;
                              return gnome;
                          }};
};

/// A Wayland session with a portal, as it is followed.
class FollowPortalTest : public ChooseDesktopTest {
protected:
    Subscription follow(const Variables& variables) {
        const Environment environment = [&variables](const char* name) {
            const auto found = variables.find(name);
            return found != variables.end() ? std::optional(found->second) : std::nullopt;
        };
        return followServices(environment, backends, desktop);
    }

    const Variables wayland{{"WAYLAND_DISPLAY", "wayland-0"}};
    Published<Desktop> desktop{Desktop{}};
};

} // namespace

TEST_F(ChooseDesktopTest, DisplayAloneIsAnXServer) {
    expectX11({{"DISPLAY", ":0"}});
}

TEST_F(ChooseDesktopTest, DisplayOfAnX11SessionIsAnXServer) {
    expectX11({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "x11"}});
    expectX11({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "tty"}}); // started by hand from a console
    expectX11({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", ""}});
}

TEST_F(ChooseDesktopTest, WaylandSessionNeverGetsItsXServer) {
    expectNothing({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "wayland"}}, onWayland);
    expectNothing({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}}, onWayland);
    expectNothing({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}}, onWayland);
}

TEST_F(ChooseDesktopTest, WaylandDisplayCountsWhateverTheSessionCallsItself) {
    expectNothing({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "x11"}}, onWayland);
}

TEST_F(ChooseDesktopTest, WaylandWithoutAnXServer) {
    expectNothing({{"WAYLAND_DISPLAY", "wayland-0"}}, onWayland);
    expectNothing({{"XDG_SESSION_TYPE", "wayland"}}, onWayland);
}

TEST_F(ChooseDesktopTest, WaylandSessionHasThePointerOfItsCompositor) {
    Desktop offered;
    offered.clicks = whole.clicks;
    offered.trust = whole.trust;
    ofCompositor = offered;
    const Desktop chosen =
        choose({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-7"}, {"XDG_SESSION_TYPE", "wayland"}});
    EXPECT_EQ(chosen.clicks, offered.clicks);
    EXPECT_EQ(chosen.trust, offered.trust);
    EXPECT_EQ(chosen.hotKeys.limit, "The global hotkey does not work here.");
    EXPECT_EQ(chosen.pointer.part, nullptr);
    EXPECT_EQ(compositors, std::vector<std::string>{"wayland-7"});
    EXPECT_EQ(connections, 0);
}

TEST_F(ChooseDesktopTest, SwayHasTheHotkeyAndEveryCompositorTheKeys) {
    ofSway.hotKeys = {whole.hotKeys.part, "sway binds it", ""};
    ofEveryCompositor.keyCharacters = {whole.keyCharacters.part, "it tells", ""};
    const Variables variables{{"WAYLAND_DISPLAY", "wayland-1"}, {"SWAYSOCK", "/run/sway"}};
    const Desktop chosen = choose(variables);
    EXPECT_EQ(chosen.hotKeys, ofSway.hotKeys);
    EXPECT_EQ(chosen.keyCharacters, ofEveryCompositor.keyCharacters);
    EXPECT_EQ(chosen.clicks.reason, onWayland) << "a hotkey is of no use for clicks";
    EXPECT_EQ(compositors, (std::vector<std::string>{"wayland-1", "wayland-1 by /run/sway"}));
    EXPECT_EQ(connections, 0);
}

TEST_F(ChooseDesktopTest, SwayIsAskedOnlyWhereItIs) {
    ofSway.hotKeys = whole.hotKeys;
    EXPECT_EQ(choose({{"WAYLAND_DISPLAY", "wayland-1"}, {"SWAYSOCK", ""}}).hotKeys.part, nullptr);
    EXPECT_EQ(choose({{"SWAYSOCK", "/run/sway"}, {"XDG_SESSION_TYPE", "wayland"}}).hotKeys.part, nullptr);
    EXPECT_EQ(compositors, std::vector<std::string>{"wayland-1"});
}

TEST_F(ChooseDesktopTest, NoCompositorIsAskedInOtherSessions) {
    expectX11({{"DISPLAY", ":0"}, {"SWAYSOCK", "/run/sway"}});
    expectX11({{"DISPLAY", ":0"}});
    expectX11({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", ""}});
    EXPECT_EQ(choose({{"XDG_SESSION_TYPE", "wayland"}}).clicks.part, nullptr);
    EXPECT_TRUE(compositors.empty());
}

TEST_F(ChooseDesktopTest, VariableSetToNothingCountsAsNotSet) {
    expectNothing({{"DISPLAY", ""}}, nowhere);
    expectX11({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", ""}});
}

TEST_F(ChooseDesktopTest, WithoutAHotkeyTheUserIsToldWhatToDo) {
    const auto advice = [this](const std::string& desktop) {
        return choose({{"WAYLAND_DISPLAY", "wayland-1"}, {"XDG_CURRENT_DESKTOP", desktop}}).hotkeyAdvice;
    };
    EXPECT_EQ(advice("labwc:wlroots").place, "the keyboard section of ~/.config/labwc/rc.xml");
    const platform::HotkeyAdvice commandAlone = advice("nobody knows it");
    EXPECT_EQ(commandAlone.place, "");
    EXPECT_EQ(choose({{"XDG_SESSION_TYPE", "wayland"}}).hotkeyAdvice, commandAlone);
    backends.compositorProgram = [](const std::string& compositor) {
        return compositor == "wayland-1" ? std::optional<std::string>("wayfire") : std::nullopt;
    };
    EXPECT_EQ(choose({{"WAYLAND_DISPLAY", "wayland-1"}}).hotkeyAdvice.place,
              "the [command] section of ~/.config/wayfire.ini");
    EXPECT_EQ(choose({{"WAYLAND_DISPLAY", "wayland-2"}}).hotkeyAdvice, commandAlone);
    ofSway.hotKeys = whole.hotKeys;
    const Desktop onSway =
        choose({{"WAYLAND_DISPLAY", "wayland-1"}, {"SWAYSOCK", "/run/sway"}, {"XDG_CURRENT_DESKTOP", "sway"}});
    EXPECT_TRUE(onSway.hotKeys.part);
    EXPECT_EQ(onSway.hotkeyAdvice.place, "~/.config/sway/config") << "the hotkey that is wanted may be taken";
    EXPECT_EQ(choose({{"DISPLAY", ":0"}}).hotkeyAdvice, platform::HotkeyAdvice{});
}

TEST_F(ChooseDesktopTest, NothingAtAll) {
    expectNothing({}, nowhere);
    expectNothing({{"XDG_SESSION_TYPE", "x11"}}, nowhere);
}

TEST_F(ChooseDesktopTest, ServerThatDoesNotAnswerIsTheReason) {
    backends.x11 = [] { return Error{"nobody is at home"}; };
    expectMissing(choose({{"DISPLAY", ":0"}}), "Input cannot be posted: nobody is at home");
}

TEST_F(ChooseDesktopTest, EachPartMayBeMissing) {
    const Desktop all = std::exchange(whole, Desktop{});
    expectMissing(choose({{"DISPLAY", ":0"}}), "Input cannot be posted: nothing here does it.");
    whole = all;
    whole.hotKeys = {};
    const Desktop withoutHotkeys = choose({{"DISPLAY", ":0"}});
    EXPECT_EQ(withoutHotkeys.hotKeys.limit, "The global hotkey does not work here.");
    EXPECT_EQ(withoutHotkeys.clicks, all.clicks);
    EXPECT_EQ(withoutHotkeys.trust, all.trust);
    EXPECT_EQ(withoutHotkeys.pointer, all.pointer);
    EXPECT_EQ(withoutHotkeys.keyCharacters, all.keyCharacters);
}

TEST_F(ChooseDesktopTest, PermissionIsOfNoUseWithoutItsClicks) {
    whole.clicks = {};
    EXPECT_EQ(choose({{"DISPLAY", ":0"}}).trust.part, nullptr);
}

TEST_F(FollowPortalTest, ClicksComeAndGoWithThePortal) {
    desktop.modify([this](Desktop& now) {
        now.hotKeys = whole.hotKeys;
        now.hotKeys.reason = "another's";
    });
    const Desktop before = desktop.get();
    const Subscription following = follow(wayland);
    EXPECT_EQ(desktop.get().clicks.part, nullptr);
    portal->set(whole);
    EXPECT_EQ(desktop.get().clicks, whole.clicks);
    EXPECT_EQ(desktop.get().trust, whole.trust);
    EXPECT_EQ(desktop.get().hotKeys, before.hotKeys) << "is none of its business";
    EXPECT_EQ(desktop.get().pointer, before.pointer);
    portal->modify([](Desktop& offered) {
        offered = {};
        offered.clicks.reason = "it has gone";
    });
    EXPECT_EQ(desktop.get().clicks.part, nullptr);
    EXPECT_EQ(desktop.get().clicks.reason, "it has gone");
    EXPECT_EQ(desktop.get().trust.part, nullptr);
}

TEST_F(FollowPortalTest, HotkeyComesAndGoesWithThePortal) {
    desktop.modify([this](Desktop& now) {
        now.clicks = whole.clicks;
        now.clicks.reason = "another's";
        now.trust = {};
        now.hotkeyAdvice.line = "the user's own";
    });
    const Desktop before = desktop.get();
    portal->modify([](Desktop& offered) { offered.hotKeys.isAwaited = true; });
    const Subscription following = follow(wayland);
    EXPECT_TRUE(desktop.get().hotKeys.isAwaited);
    portal->set(whole);
    EXPECT_EQ(desktop.get().hotKeys, whole.hotKeys);
    EXPECT_EQ(desktop.get().clicks, before.clicks) << "are none of its business";
    EXPECT_EQ(desktop.get().trust, before.trust);
    EXPECT_EQ(desktop.get().hotkeyAdvice, before.hotkeyAdvice) << "it may be refused";
    portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "it has gone", "it has gone"}; });
    EXPECT_EQ(desktop.get().hotKeys.part, nullptr);
    EXPECT_EQ(desktop.get().hotKeys.reason, "it has gone");
    EXPECT_EQ(desktop.get().clicks, before.clicks);
}

TEST_F(FollowPortalTest, PlasmaComesBeforeIt) {
    desktop.modify([this](Desktop& now) {
        now.clicks = whole.clicks;
        now.pointer = {nullptr, "nobody tells", "nobody tells"};
    });
    plasma = std::make_shared<Published<Desktop>>(Desktop{});
    plasma->modify([](Desktop& offered) { offered.hotKeys.isAwaited = true; });
    const Subscription following = follow(wayland);
    EXPECT_TRUE(desktop.get().hotKeys.isAwaited);
    EXPECT_EQ(desktop.get().pointer.reason, "nobody tells") << "there is no word of it";
    plasma->modify([this](Desktop& offered) {
        offered.hotKeys = {whole.hotKeys.part, "Plasma binds it", ""};
        offered.pointer = {whole.pointer.part, "Plasma tells", ""};
    });
    EXPECT_EQ(desktop.get().hotKeys.reason, "Plasma binds it");
    EXPECT_EQ(desktop.get().pointer.reason, "Plasma tells");
    EXPECT_EQ(desktop.get().clicks, whole.clicks);
    EXPECT_EQ(portals, 0) << "nobody needs it";
}

TEST_F(FollowPortalTest, IsAskedWherePlasmaIsNot) {
    desktop.modify([this](Desktop& now) { now.clicks = whole.clicks; });
    plasma = std::make_shared<Published<Desktop>>(Desktop{});
    plasma->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "no Plasma", "no Plasma"}; });
    portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "not yet", "not yet", true}; });
    const Subscription following = follow(wayland);
    EXPECT_EQ(portals, 1);
    EXPECT_EQ(desktop.get().hotKeys.reason, "not yet");
    portal->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "the portal binds it", ""}; });
    EXPECT_EQ(desktop.get().hotKeys.reason, "the portal binds it");
    plasma->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "Plasma binds it", ""}; });
    EXPECT_EQ(desktop.get().hotKeys.reason, "Plasma binds it") << "it came late";
}

TEST_F(FollowPortalTest, WhatTheCompositorItselfBindsComesBeforeAllElse) {
    desktop.modify([this](Desktop& now) {
        now = whole;
        now.hotKeys.reason = "chosen at the start";
    });
    const auto before = desktop.get();
    compositorKeys = std::make_shared<Published<Desktop>>(Desktop{});
    compositorKeys->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "not yet", "not yet", true}; });
    const Subscription following = follow(wayland);
    EXPECT_EQ(compositors, std::vector<std::string>{"keys of wayland-0"});
    EXPECT_EQ(desktop.get().hotKeys.reason, "not yet");
    compositorKeys->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "its own", ""}; });
    EXPECT_EQ(desktop.get().hotKeys.reason, "its own");
    EXPECT_EQ(desktop.get().clicks, before.clicks);
    EXPECT_EQ(desktop.get().pointer, before.pointer);
    compositorKeys->set(Desktop{});
    EXPECT_EQ(desktop.get(), before) << "it offers none any more";
    EXPECT_EQ(portals, 0);
}

TEST_F(FollowPortalTest, WithoutTheCompositorsOwnTheNextIsAsked) {
    desktop.modify([this](Desktop& now) { now.clicks = whole.clicks; });
    compositorKeys = std::make_shared<Published<Desktop>>(Desktop{});
    compositorKeys->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "not yet", "not yet", true}; });
    portal->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "the portal binds it", ""}; });
    const Subscription following = follow(wayland);
    EXPECT_EQ(portals, 0) << "somebody better may still answer";
    compositorKeys->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "its own", ""}; });
    EXPECT_EQ(portals, 0);
    compositorKeys->set(Desktop{});
    EXPECT_EQ(portals, 1);
    EXPECT_EQ(desktop.get().hotKeys.reason, "the portal binds it");
}

TEST_F(FollowPortalTest, TheUsersOwnShortcutsAreTheLastResort) {
    gnome = std::make_shared<Published<Desktop>>(Desktop{});
    gnome->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "GNOME may", "GNOME may", true}; });
    portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "not yet", "not yet", true}; });
    const Subscription following = follow(wayland);
    EXPECT_EQ(gnomes, 0) << "somebody better may still answer";
    portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "it offers none", "it offers none"}; });
    EXPECT_EQ(gnomes, 1);
    EXPECT_TRUE(desktop.get().hotKeys.isAwaited);
    gnome->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "among the user's own", ""}; });
    EXPECT_EQ(desktop.get().hotKeys.reason, "among the user's own");
    portal->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "the portal binds it", ""}; });
    EXPECT_EQ(desktop.get().hotKeys.reason, "the portal binds it") << "it came late";
    portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "it has gone", "it has gone"}; });
    EXPECT_EQ(desktop.get().hotKeys.reason, "it has gone") << "it may be back";
}

TEST_F(FollowPortalTest, WhereNobodyHasHotkeysTheLastButTheUsersOwnSaysWhy) {
    gnome = std::make_shared<Published<Desktop>>(Desktop{});
    portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "it offers none", "it offers none"}; });
    const Subscription following = follow(wayland);
    EXPECT_EQ(gnomes, 1);
    EXPECT_EQ(desktop.get().hotKeys.reason, "it offers none");
}

TEST_F(FollowPortalTest, WhereAnotherHasHotkeysTheUsersOwnAreNotAskedFor) {
    gnome = std::make_shared<Published<Desktop>>(Desktop{});
    gnome->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "among the user's own", ""}; });
    portal->modify([this](Desktop& offered) { offered.hotKeys = {whole.hotKeys.part, "the portal binds it", ""}; });
    {
        const Subscription following = follow(wayland);
        portal->modify([](Desktop& offered) { offered.hotKeys = {nullptr, "it has gone", "it has gone"}; });
        EXPECT_EQ(desktop.get().hotKeys.reason, "it has gone");
    }
    portal->set(Desktop{});
    desktop.modify([this](Desktop& now) { now.hotKeys = {whole.hotKeys.part, "chosen at the start", ""}; });
    const Subscription following = follow(wayland);
    EXPECT_EQ(desktop.get().hotKeys.reason, "chosen at the start");
    EXPECT_EQ(gnomes, 0);
}

TEST_F(FollowPortalTest, HyprlandTellsWhereThePointerIs) {
    const Variables session{
        {"WAYLAND_DISPLAY", "wayland-1"}, {"XDG_RUNTIME_DIR", "/run/user/1"}, {"HYPRLAND_INSTANCE_SIGNATURE", "abc"}};
    hyprland = std::make_shared<Published<Desktop>>(Desktop{});
    hyprland->modify([this](Desktop& offered) { offered.pointer = {whole.pointer.part, "Hyprland tells", ""}; });
    const Subscription following = follow(session);
    EXPECT_EQ(hyprlands, std::vector<std::string>{"wayland-1 in /run/user/1/hypr/abc"});
    EXPECT_EQ(desktop.get().pointer, hyprland->get().pointer);
    hyprland->modify([](Desktop& offered) { offered.pointer.limit = "it does not answer"; });
    EXPECT_EQ(desktop.get().pointer.limit, "it does not answer");
}

TEST_F(FollowPortalTest, HyprlandIsAskedOnlyWhereItIs) {
    desktop.modify([](Desktop& now) { now.pointer = {nullptr, "nobody tells", "nobody tells"}; });
    const Variables everything{
        {"WAYLAND_DISPLAY", "wayland-1"}, {"XDG_RUNTIME_DIR", "/run/user/1"}, {"HYPRLAND_INSTANCE_SIGNATURE", "abc"}};
    for (const auto& [name, value] : everything) {
        Variables session = everything;
        session[name] = "";
        session["XDG_SESSION_TYPE"] = "wayland";
        const Subscription following = follow(session);
        EXPECT_TRUE(hyprlands.empty()) << name;
    }
    const Subscription following = follow(everything);
    EXPECT_EQ(hyprlands.size(), 1U);
    EXPECT_EQ(desktop.get().pointer.reason, "nobody tells") << "nobody listens at its socket";
}

TEST_F(FollowPortalTest, EndsWithItsSubscription) {
    { const Subscription following = follow(wayland); }
    portal->set(whole);
    EXPECT_EQ(desktop.get().clicks.part, nullptr);
    EXPECT_EQ(desktop.get().hotKeys.part, nullptr);
    EXPECT_EQ(portal.use_count(), 1);
}

TEST_F(FollowPortalTest, IsForWaylandOnly) {
    const Subscription following = follow({{"DISPLAY", ":0"}});
    EXPECT_EQ(portals, 0);
}

TEST_F(FollowPortalTest, IsNotAskedWhereSomethingElseDoesAll) {
    desktop.set(whole);
    const Subscription following = follow(wayland);
    EXPECT_EQ(portals, 0);
}

TEST_F(FollowPortalTest, IsAskedWhenTheCompositorTurnsOutToHaveNoPointer) {
    desktop.set(whole);
    const Subscription following = follow(wayland);
    backends.lacksPointer->set(true);
    EXPECT_EQ(portals, 1);
    EXPECT_EQ(desktop.get().clicks.part, nullptr);
    EXPECT_EQ(desktop.get().trust.part, nullptr);
    EXPECT_EQ(desktop.get().hotKeys, whole.hotKeys);
    portal->set(whole);
    EXPECT_EQ(desktop.get().clicks, whole.clicks);
    EXPECT_EQ(desktop.get().trust, whole.trust);
}

TEST_F(FollowPortalTest, OneThatHasTheHotkeyIsAskedForLateClicksToo) {
    desktop.modify([this](Desktop& now) {
        now.clicks = whole.clicks;
        now.clicks.reason = "another's";
    });
    portal->set(whole);
    const Subscription following = follow(wayland);
    EXPECT_EQ(desktop.get().hotKeys, whole.hotKeys);
    EXPECT_EQ(desktop.get().clicks.reason, "another's");
    backends.lacksPointer->set(true);
    EXPECT_EQ(portals, 1);
    EXPECT_EQ(desktop.get().clicks, whole.clicks);
    EXPECT_EQ(desktop.get().hotKeys, whole.hotKeys);
}

TEST_F(FollowPortalTest, ClicksThatTurnOutToBeNoneHaveAReason) {
    portal = nullptr;
    desktop.set(whole);
    const Subscription following = follow(wayland);
    backends.lacksPointer->set(true);
    EXPECT_EQ(desktop.get().clicks.part, nullptr);
    EXPECT_EQ(desktop.get().clicks.reason, "Input cannot be posted: the compositor gives programs no pointer.");
    EXPECT_EQ(desktop.get().clicks.limit, desktop.get().clicks.reason);
    EXPECT_EQ(desktop.get().trust.part, nullptr);
}

TEST_F(FollowPortalTest, NobodyIsAskedAfterItsEnd) {
    desktop.set(whole);
    { const Subscription following = follow(wayland); }
    backends.lacksPointer->set(true);
    EXPECT_EQ(portals, 0);
    EXPECT_EQ(desktop.get(), whole);
}

TEST_F(FollowPortalTest, MayHaveNoBus) {
    portal = nullptr;
    const Desktop before = desktop.get();
    const Subscription following = follow(wayland);
    EXPECT_EQ(portals, 1);
    EXPECT_EQ(desktop.get(), before);
}

TEST(Environment, IsThatOfTheProcess) {
    ASSERT_EQ(setenv("VELLORAN_ENVIRONMENT_TEST", "some value", 1), 0);
    EXPECT_EQ(processEnvironment("VELLORAN_ENVIRONMENT_TEST"), "some value");
    ASSERT_EQ(setenv("VELLORAN_ENVIRONMENT_TEST", "", 1), 0);
    EXPECT_EQ(processEnvironment("VELLORAN_ENVIRONMENT_TEST"), "");
    ASSERT_EQ(unsetenv("VELLORAN_ENVIRONMENT_TEST"), 0);
    EXPECT_EQ(processEnvironment("VELLORAN_ENVIRONMENT_TEST"), std::nullopt);
}

TEST(RealBackends, XServerHasEveryPart) {
    const tests::PrivateServer server;
    ASSERT_TRUE(server.isUp());
    ASSERT_EQ(setenv("DISPLAY", server.displayName().c_str(), 1), 0);
    fakes::VirtualLoop loop;
    const auto x11 = realBackends(loop, {}).x11();
    ASSERT_TRUE(x11.ok()) << x11.error().message;
    const Desktop& desktop = x11.value();
    ASSERT_NE(desktop.clicks.part, nullptr);
    ASSERT_NE(desktop.trust.part, nullptr);
    EXPECT_TRUE(desktop.trust.part->isTrusted());
    EXPECT_NE(desktop.pointer.part, nullptr);
    EXPECT_NE(desktop.hotKeys.part, nullptr);
    EXPECT_NE(desktop.keyCharacters.part, nullptr);
    for (const std::string& limit : {desktop.clicks.limit, desktop.trust.limit, desktop.pointer.limit,
                                     desktop.hotKeys.limit, desktop.keyCharacters.limit}) {
        EXPECT_EQ(limit, "");
    }
    EXPECT_EQ(desktop.clicks.reason, "Input is posted through the X server: the session runs on one.");
}

TEST(RealBackends, CompositorThatGivesPointersHasClicksAndTrust) {
    const tests::Sway sway;
    ASSERT_TRUE(sway.isUp()) << "sway must be installed";
    fakes::VirtualLoop loop;
    const auto offered = realBackends(loop, {}).virtualPointer(sway.display());
    ASSERT_TRUE(offered.ok()) << offered.error().message;
    const Desktop& desktop = offered.value();
    ASSERT_NE(desktop.clicks.part, nullptr);
    ASSERT_NE(desktop.trust.part, nullptr);
    EXPECT_TRUE(desktop.trust.part->isTrusted());
    EXPECT_TRUE(
        desktop.clicks.part->makeMouseEvent(platform::MouseEventType::leftMouseDown, {}, platform::EventButton::left));
    EXPECT_EQ(desktop.hotKeys.part, nullptr);
    EXPECT_EQ(desktop.pointer.part, nullptr);
}

TEST(RealBackends, SwayHasTheHotkeyAndTheKeyboard) {
    const tests::Sway sway;
    ASSERT_TRUE(sway.isUp()) << "sway must be installed";
    fakes::VirtualLoop loop;
    const Backends backends = realBackends(loop, {});
    const auto offered = backends.sway(sway.display(), sway.commandSocket());
    ASSERT_TRUE(offered.ok()) << offered.error().message;
    EXPECT_NE(offered.value().hotKeys.part, nullptr);
    EXPECT_EQ(offered.value().clicks.part, nullptr);
    EXPECT_FALSE(backends.sway(sway.display(), "/no/such/socket").ok());
    const auto told = backends.compositor(sway.display());
    ASSERT_TRUE(told.ok());
    EXPECT_NE(told.value().keyCharacters.part, nullptr);
}

TEST(RealBackends, SwayHasNoHotKeysOfItsOwnForPrograms) {
    const tests::Sway sway;
    ASSERT_TRUE(sway.isUp()) << "sway must be installed";
    fakes::VirtualLoop loop;
    const auto keys = realBackends(loop, {}).compositorHotKeys(sway.display());
    ASSERT_NE(keys, nullptr);
    EXPECT_EQ(keys->get(), Desktop()) << "it has said so before there is a window";
}

TEST(RealBackends, TheCompositorsProgramIsNamed) {
    const tests::Sway sway;
    ASSERT_TRUE(sway.isUp()) << "sway must be installed";
    fakes::VirtualLoop loop;
    EXPECT_EQ(realBackends(loop, {}).compositorProgram(sway.display()), "sway");
    EXPECT_EQ(realBackends(loop, {}).compositorProgram("/no/such/compositor"), std::nullopt);
}

TEST(RealBackends, HyprlandThatIsNotThereTellsNothing) {
    fakes::VirtualLoop loop;
    EXPECT_EQ(realBackends(loop, {}).hyprland("wayland-1", "/no/such/folder"), nullptr);
}

TEST(RealBackends, CompositorThatIsNotThereHasNone) {
    fakes::VirtualLoop loop;
    const auto offered = realBackends(loop, {}).virtualPointer("/no/such/compositor");
    ASSERT_FALSE(offered.ok());
    EXPECT_EQ(offered.error().message, "the compositor gives programs no pointer.");
    EXPECT_FALSE(realBackends(loop, {}).compositor("/no/such/compositor").ok());
}

TEST(RealBackends, XServerThatDoesNotAnswerHasNone) {
    ASSERT_EQ(setenv("DISPLAY", "unix:/no/such/server", 1), 0);
    fakes::VirtualLoop loop;
    const auto x11 = realBackends(loop, {}).x11();
    ASSERT_FALSE(x11.ok());
    EXPECT_EQ(x11.error().message, "No X server answers at the display");
}

} // namespace velloran
