#include "hotkeyAdvice.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

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
    {"river",
     "~/.config/river/init (from river 0.4 on, bind a key to what is quoted here, in the settings of your window "
     "manager)",
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

/// Hyprland reads another language since 0.55; the older one only where the user still has a file in it.
constexpr KnownDesktop hyprlandInLua{
    "hyprland", "~/.config/hypr/hyprland.lua",
    R"lua(hl.bind("CTRL + F6", hl.dsp.exec_cmd("gapplication action app.velloran.Velloran toggle")))lua"};

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

/// Whether Hyprland takes its configuration from the older of its two files: the newer one goes first.
bool readsOldHyprlandFile(const Environment& environment) {
    namespace fs = std::filesystem;
    const fs::path folder =
        setValue(environment, "XDG_CONFIG_HOME").value_or(environment("HOME").value_or("") + "/.config");
    std::error_code ignored;
    return fs::exists(folder / "hypr" / "hyprland.conf", ignored) &&
           !fs::exists(folder / "hypr" / "hyprland.lua", ignored);
}

std::optional<platform::HotkeyAdvice> adviceFor(const std::string& name, const Environment& environment) {
    const auto* const found = std::find_if(knownDesktops.begin(), knownDesktops.end(),
                                           [&](const KnownDesktop& desktop) { return desktop.name == name; });
    if (found == knownDesktops.end()) {
        return std::nullopt;
    }
    const KnownDesktop& desktop =
        name == hyprlandInLua.name && !readsOldHyprlandFile(environment) ? hyprlandInLua : *found;
    return platform::HotkeyAdvice{std::string(desktop.place), std::string(desktop.line)};
}

} // namespace

platform::HotkeyAdvice hotkeyAdvice(const Environment& environment, const CompositorProgram& compositorProgram) {
    // Several, the most particular first, with a ":" between them.
    std::istringstream names(lowered(environment("XDG_CURRENT_DESKTOP").value_or("")));
    for (std::string name; std::getline(names, name, ':');) {
        if (const auto advice = adviceFor(name, environment)) {
            return *advice;
        }
    }
    if (const auto advice = adviceFor(lowered(compositorProgram().value_or("")), environment)) {
        return *advice;
    }
    return {{}, "gapplication action app.velloran.Velloran toggle"};
}

} // namespace velloran
