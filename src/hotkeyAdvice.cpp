#include "hotkeyAdvice.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string>
#include <string_view>

namespace velloran {

namespace {

struct KnownDesktop {
    std::string_view name;
    std::string_view place;
    std::string_view line;
};

/// The key stands for any: it is for the user to choose.
constexpr std::array<KnownDesktop, 9> knownDesktops{{
    {"sway", "~/.config/sway/config", "bindsym Control+F6 exec gapplication action app.velloran.Velloran toggle"},
    {"labwc", "the keyboard section of ~/.config/labwc/rc.xml",
     R"(<keybind key="C-F6"><action name="Execute" command="gapplication action app.velloran.Velloran toggle"/></keybind>)"},
    {"hyprland", "~/.config/hypr/hyprland.conf",
     "bind = CTRL, F6, exec, gapplication action app.velloran.Velloran toggle"},
    {"niri", "the binds section of ~/.config/niri/config.kdl",
     R"(Ctrl+F6 { spawn "gapplication" "action" "app.velloran.Velloran" "toggle"; })"},
    {"river", "~/.config/river/init",
     R"(riverctl map normal Control F6 spawn "gapplication action app.velloran.Velloran toggle")"},
    {"wayfire", "the [command] section of ~/.config/wayfire.ini",
     "binding_velloran = <ctrl> KEY_F6\ncommand_velloran = gapplication action app.velloran.Velloran toggle"},
    {"gnome", "Settings → Keyboard → View and Customise Shortcuts → Custom Shortcuts, as the command",
     "gapplication action app.velloran.Velloran toggle"},
    {"kde", "System Settings → Keyboard → Shortcuts → Add New → Command or Script",
     "gapplication action app.velloran.Velloran toggle"},
    {"cosmic", "Settings → Input Devices → Keyboard → Keyboard shortcuts → Custom, as the command",
     "gapplication action app.velloran.Velloran toggle"},
}};

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

} // namespace

platform::HotkeyAdvice hotkeyAdvice(const Environment& environment) {
    // Several, the most particular first, with a ":" between them.
    std::istringstream names(lowered(environment("XDG_CURRENT_DESKTOP").value_or("")));
    for (std::string name; std::getline(names, name, ':');) {
        const auto* const found = std::find_if(knownDesktops.begin(), knownDesktops.end(),
                                               [&](const KnownDesktop& desktop) { return desktop.name == name; });
        if (found != knownDesktops.end()) {
            return {std::string(found->place), std::string(found->line)};
        }
    }
    return {{}, "gapplication action app.velloran.Velloran toggle"};
}

} // namespace velloran
