#include "hotkeyAdvice.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>

namespace velloran {
namespace {

const std::string command = "gapplication action app.velloran.Velloran toggle";

class HotkeyAdviceTest : public testing::Test {
protected:
    void SetUp() override {
        std::string name = std::filesystem::temp_directory_path() / "velloran-advice-XXXXXX";
        home = mkdtemp(name.data());
        variables["HOME"] = home;
    }

    void TearDown() override { std::filesystem::remove_all(home); }

    /// Where the session calls itself that, and the compositor is that program.
    [[nodiscard]] platform::HotkeyAdvice advice(const std::string& desktop,
                                                const std::optional<std::string>& program = {}) const {
        const Environment environment = [&](const char* name) -> std::optional<std::string> {
            if (name == std::string("XDG_CURRENT_DESKTOP")) {
                return desktop.empty() ? std::nullopt : std::optional(desktop);
            }
            const auto found = variables.find(name);
            return found != variables.end() ? std::optional(found->second) : std::nullopt;
        };
        return hotkeyAdvice(environment, [&] { return program; });
    }

    static void write(const std::filesystem::path& file) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "\n";
    }

    std::filesystem::path home;
    std::map<std::string, std::string> variables;
};

TEST_F(HotkeyAdviceTest, EachDesktopHasALineOfItsOwn) {
    EXPECT_EQ(advice("sway").place, "~/.config/sway/config");
    EXPECT_EQ(advice("sway").line, "bindsym Control+F6 exec " + command);
    EXPECT_EQ(advice("labwc:wlroots").line,
              R"(<keybind key="C-F6"><action name="Execute" command=")" + command + R"("/></keybind>)");
    EXPECT_EQ(advice("Wayfire").place, "the [command] section of ~/.config/wayfire.ini");
    EXPECT_EQ(advice("Wayfire").line, "binding_velloran = <ctrl> KEY_F6\ncommand_velloran = " + command);
    EXPECT_EQ(advice("niri").line, R"(Ctrl+F6 { spawn "gapplication" "action" "app.velloran.Velloran" "toggle"; })");
    EXPECT_EQ(advice("ubuntu:GNOME").line, command);
    EXPECT_NE(advice("ubuntu:GNOME").place, "");
    EXPECT_EQ(advice("nobody knows it"), (platform::HotkeyAdvice{"", command}));
    EXPECT_EQ(advice(""), (platform::HotkeyAdvice{"", command}));
}

TEST_F(HotkeyAdviceTest, RiversLineIsForReleasesThatHaveKeysOfTheirOwn) {
    EXPECT_EQ(advice("river").line, "riverctl map normal Control F6 spawn \"" + command + '"');
    EXPECT_EQ(advice("river").place,
              "~/.config/river/init (from river 0.4 on, bind a key to what is quoted here, in the "
              "settings of your window manager)");
}

TEST_F(HotkeyAdviceTest, HyprlandsIsInTheLanguageOfTheFileThatItReads) {
    const auto conf = home / ".config/hypr/hyprland.conf";
    const auto lua = home / ".config/hypr/hyprland.lua";
    const platform::HotkeyAdvice inLua{"~/.config/hypr/hyprland.lua",
                                       "hl.bind(\"CTRL + F6\", hl.dsp.exec_cmd(\"" + command + "\"))"};
    const platform::HotkeyAdvice inConf{"~/.config/hypr/hyprland.conf", "bind = CTRL, F6, exec, " + command};
    EXPECT_EQ(advice("Hyprland"), inLua) << "it would make that file";
    write(conf);
    EXPECT_EQ(advice("Hyprland"), inConf);
    variables["XDG_CONFIG_HOME"] = home / "elsewhere";
    EXPECT_EQ(advice("Hyprland"), inLua);
    variables["XDG_CONFIG_HOME"] = "";
    write(lua);
    EXPECT_EQ(advice("Hyprland"), inLua);
}

TEST_F(HotkeyAdviceTest, ASessionWithoutAKnownNameIsThatOfItsCompositor) {
    EXPECT_EQ(advice("", "river"), advice("river"));
    EXPECT_EQ(advice("wlroots", "wayfire"), advice("Wayfire"));
    EXPECT_EQ(advice("", "Hyprland"), advice("Hyprland"));
    EXPECT_EQ(advice("", "something else"), advice(""));
    EXPECT_EQ(advice("sway", "river"), advice("sway"));
}

} // namespace
} // namespace velloran
