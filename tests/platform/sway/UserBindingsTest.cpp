#include "platform/sway/UserBindings.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace velloran::tests {

using namespace platform::sway;

namespace {

constexpr std::uint32_t shift = 1;
constexpr std::uint32_t control = 4;
constexpr std::uint32_t alt = 8;
constexpr std::uint32_t super = 64;

UserBinding bySymbol(std::uint32_t modifiers, const std::string& key) {
    return {modifiers, key, false};
}

UserBinding byCode(std::uint32_t modifiers, const std::string& key) {
    return {modifiers, key, true};
}

using Bindings = std::vector<UserBinding>;

} // namespace

class UserBindingsTest : public testing::Test {
protected:
    Bindings read(const std::string& text) {
        return userBindings({"/home/user/.config/sway/config", text},
                            [this](const std::string& words, const std::string& folder) {
                                asked.push_back(folder + ": " + words);
                                return included[words];
                            });
    }

    std::map<std::string, std::vector<ConfigurationFile>> included;
    std::vector<std::string> asked;
};

TEST_F(UserBindingsTest, AreSymbolsAndCodesWithTheirModifiers) {
    EXPECT_EQ(read("bindsym Control+F8 exec foot\n"
                   "  bindsym --locked --input-device=1:1:kbd mod4+SHIFT+q kill\n"
                   "bindcode --release Alt+Ctrl+74 nop\n"
                   "BindSym F1 nop"),
              (Bindings{bySymbol(control, "F8"), bySymbol(super | shift, "q"), byCode(alt | control, "74"),
                        bySymbol(0, "F1")}));
}

TEST_F(UserBindingsTest, OfNothingElse) {
    EXPECT_EQ(read("# bindsym F8 nop\n"
                   "bindsym F8\n"
                   "bindsym\n"
                   "bindsym a+b nop\n"
                   "bindsym Control+ nop\n"
                   "bindswitch lid:on output eDP-1 disable\n"
                   "exec swaymsg bindsym F8 nop\n"
                   "output * bg #000000 solid_color"),
              Bindings{});
}

TEST_F(UserBindingsTest, VariablesArePutIn) {
    EXPECT_EQ(
        read("set $mod Mod4\n"
             "set $mode Control\n"
             "bindsym $mod+a nop\n"
             "bindsym $mode+b nop\n"
             "set $both $mod+Shift\n"
             "set $mod Mod1\n"
             "bindsym $both+c nop\n"
             "bindsym \"$mod+d\" nop\n"
             "bindsym $unknown+e nop"),
        (Bindings{bySymbol(super, "a"), bySymbol(control, "b"), bySymbol(super | shift, "c"), bySymbol(alt, "d")}));
}

TEST_F(UserBindingsTest, InBlocksAndLinesThatGoOn) {
    EXPECT_EQ(read("bindsym {\n"
                   "    Control+F1 exec foot\n"
                   "    Control+F2 nop\n"
                   "}\n"
                   "bindsym --locked\n"
                   "{\n"
                   "  F3 nop\n"
                   "}\n"
                   "bindsym \\\n"
                   "  F4 exec \\\n"
                   "  foot\n"
                   "bar {\n"
                   "  colors {\n"
                   "     background #000000\n"
                   "  }\n"
                   "  bindsym F5 nop\n"
                   "}\n"
                   "}\n"
                   "bindsym F6 nop"),
              (Bindings{bySymbol(control, "F1"), bySymbol(control, "F2"), bySymbol(0, "F3"), bySymbol(0, "F4"),
                        bySymbol(0, "F6")}));
}

TEST_F(UserBindingsTest, OfOtherModesAreNoneHere) {
    EXPECT_EQ(read("mode \"resize\" {\n"
                   "  bindsym F1 nop\n"
                   "  bindsym {\n"
                   "    F2 nop\n"
                   "  }\n"
                   "}\n"
                   "mode --pango_markup <b>resize</b> bindsym F3 nop\n"
                   "mode \"default\" {\n"
                   "  bindsym F4 nop\n"
                   "}\n"
                   "mode default bindsym F5 nop"),
              (Bindings{bySymbol(0, "F4"), bySymbol(0, "F5")}));
}

TEST_F(UserBindingsTest, AreTakenBack) {
    EXPECT_EQ(read("bindsym F1 nop\n"
                   "bindcode 67 nop\n"
                   "bindsym F2 nop\n"
                   "unbindsym F1\n"
                   "unbindcode --locked 67"),
              Bindings{bySymbol(0, "F2")});
}

TEST_F(UserBindingsTest, OfIncludedFilesCountWithTheirVariablesAndOnce) {
    included["colours/*.conf"] = {
        {"/home/user/.config/sway/colours/one.conf", "set $key F2\nbindsym F1 nop\ninclude deeper"},
        {"/home/user/.config/sway/colours/two.conf", "bindsym $key nop\ninclude colours/*.conf"}};
    included["deeper"] = {{"/elsewhere/deeper", "bindsym F3 nop"}};
    EXPECT_EQ(read("set $what colours\n"
                   "include \"$what/*.conf\"\n"
                   "include deeper\n"
                   "include two words\n"
                   "bindsym $key+Shift nop"),
              (Bindings{bySymbol(0, "F1"), bySymbol(0, "F3"), bySymbol(0, "F2"), bySymbol(shift, "F2")}));
    EXPECT_EQ(asked, (std::vector<std::string>{
                         "/home/user/.config/sway/: colours/*.conf", "/home/user/.config/sway/colours/: deeper",
                         "/home/user/.config/sway/colours/: colours/*.conf", "/home/user/.config/sway/: deeper"}));
}

TEST_F(UserBindingsTest, VariablesThatGrowBeyondAllMeasureAreNothing) {
    std::string text = "set $a 0123456789\n";
    for (int i = 0; i < 64; ++i) {
        text += "set $a $a$a\n";
    }
    EXPECT_EQ(read(text + "bindsym $a nop\nbindsym F1 nop"), Bindings{bySymbol(0, "F1")});
}

} // namespace velloran::tests
