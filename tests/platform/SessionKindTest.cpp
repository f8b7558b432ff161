#include "platform/SessionKind.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

namespace velloran::platform {

namespace {

using Variables = std::map<std::string, std::string>;

BackendChoice choose(const Variables& variables) {
    return chooseBackend([&variables](const char* name) {
        const auto found = variables.find(name);
        return found != variables.end() ? std::optional(found->second) : std::nullopt;
    });
}

const BackendChoice onX11{Backend::x11, "Input is posted through the X server: the session runs on one."};
const BackendChoice onWayland{Backend::unavailable,
                              "Input cannot be posted: this is a Wayland session, and an X server inside it reaches "
                              "only some windows."};
const BackendChoice nowhere{Backend::unavailable, "Input cannot be posted: there is no display."};

} // namespace

TEST(SessionKind, DisplayAloneIsAnXServer) {
    EXPECT_EQ(choose({{"DISPLAY", ":0"}}), onX11);
}

TEST(SessionKind, DisplayOfAnX11SessionIsAnXServer) {
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "x11"}}), onX11);
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "tty"}}), onX11) << "started by hand from a console";
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", ""}}), onX11);
}

TEST(SessionKind, WaylandSessionNeverGetsItsXServer) {
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "wayland"}}),
              onWayland);
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}}), onWayland);
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}}), onWayland);
}

TEST(SessionKind, WaylandDisplayCountsWhateverTheSessionCallsItself) {
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "x11"}}), onWayland);
}

TEST(SessionKind, WaylandWithoutAnXServer) {
    EXPECT_EQ(choose({{"WAYLAND_DISPLAY", "wayland-0"}}), onWayland);
    EXPECT_EQ(choose({{"XDG_SESSION_TYPE", "wayland"}}), onWayland);
}

TEST(SessionKind, VariableSetToNothingCountsAsNotSet) {
    EXPECT_EQ(choose({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", ""}}), onX11);
    EXPECT_EQ(choose({{"DISPLAY", ""}}), nowhere);
}

TEST(SessionKind, NothingAtAll) {
    EXPECT_EQ(choose({}), nowhere);
    EXPECT_EQ(choose({{"XDG_SESSION_TYPE", "x11"}}), nowhere);
}

TEST(SessionKind, EnvironmentOfTheProcess) {
    ASSERT_EQ(setenv("VELLORAN_SESSION_KIND_TEST", "some value", 1), 0);
    EXPECT_EQ(processEnvironment("VELLORAN_SESSION_KIND_TEST"), "some value");
    ASSERT_EQ(setenv("VELLORAN_SESSION_KIND_TEST", "", 1), 0);
    EXPECT_EQ(processEnvironment("VELLORAN_SESSION_KIND_TEST"), "");
    ASSERT_EQ(unsetenv("VELLORAN_SESSION_KIND_TEST"), 0);
    EXPECT_EQ(processEnvironment("VELLORAN_SESSION_KIND_TEST"), std::nullopt);
}

} // namespace velloran::platform
