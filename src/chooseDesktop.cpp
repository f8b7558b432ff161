#include "chooseDesktop.h"

#include "hotkeyAdvice.h"

#include <array>
#include <cstdlib>
#include <utility>

namespace velloran {

using platform::Desktop;
using platform::DesktopPart;

namespace {

constexpr auto inputCannotBePosted = "Input cannot be posted: ";
constexpr auto nobodyToAsk = "Nobody can be asked for the permission to click.";

/// What one backend has for this session, or why it has nothing.
using Candidate = Result<Desktop> (*)(const Environment& environment, const Backends& backends);

bool isSet(const Environment& environment, const char* name) {
    return setValue(environment, name).has_value();
}

Result<Desktop> onX11(const Environment& environment, const Backends& backends) {
    if (isWayland(environment)) {
        return Error{"this is a Wayland session, and an X server inside it reaches only some windows."};
    }
    if (!isSet(environment, "DISPLAY")) {
        return Error{"there is no display."};
    }
    return backends.x11();
}

Result<Desktop> onVirtualPointer(const Environment& environment, const Backends& backends) {
    if (!isSet(environment, "WAYLAND_DISPLAY")) {
        return Desktop{};
    }
    return backends.virtualPointer(*environment("WAYLAND_DISPLAY"));
}

Result<Desktop> onSway(const Environment& environment, const Backends& backends) {
    if (!isSet(environment, "WAYLAND_DISPLAY") || !isSet(environment, "SWAYSOCK")) {
        return Desktop{};
    }
    return backends.sway(*environment("WAYLAND_DISPLAY"), *environment("SWAYSOCK"));
}

Result<Desktop> onCompositor(const Environment& environment, const Backends& backends) {
    if (!isSet(environment, "WAYLAND_DISPLAY")) {
        return Desktop{};
    }
    return backends.compositor(*environment("WAYLAND_DISPLAY"));
}

/// The best one first.
constexpr std::array<Candidate, 4> candidates{onX11, onVirtualPointer, onSway, onCompositor};

template<typename Interface>
void fill(DesktopPart<Interface>& part, const DesktopPart<Interface>& offered) {
    if (!part.part && offered.part) {
        part = offered;
    }
}

void fill(Desktop& desktop, const Desktop& offered) {
    if (!desktop.clicks.part && offered.clicks.part) {
        // Nobody's permission is of use for another's clicks.
        desktop.clicks = offered.clicks;
        desktop.trust = offered.trust;
    }
    fill(desktop.pointer, offered.pointer);
    fill(desktop.hotKeys, offered.hotKeys);
    fill(desktop.keyCharacters, offered.keyCharacters);
}

template<typename Interface>
void explain(DesktopPart<Interface>& part, const std::string& reason, const std::string& limit) {
    if (!part.part) {
        part = {nullptr, reason, limit};
    }
}

} // namespace

std::optional<std::string> processEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> setValue(const Environment& environment, const char* name) {
    auto value = environment(name);
    return value && !value->empty() ? std::move(value) : std::nullopt;
}

bool isWayland(const Environment& environment) {
    return isSet(environment, "WAYLAND_DISPLAY") || environment("XDG_SESSION_TYPE") == "wayland";
}

DesktopPart<platform::PointerEvents> noPointerOfCompositor() {
    const std::string why = std::string(inputCannotBePosted) + noPointer;
    return {nullptr, why, why};
}

DesktopPart<platform::InputTrust> nobodyAsked() {
    return {nullptr, nobodyToAsk, {}};
}

Desktop chooseDesktop(const Environment& environment, const Backends& backends) {
    Desktop desktop;
    std::string whyNot;
    for (const Candidate candidate : candidates) {
        const Result<Desktop> offered = candidate(environment, backends);
        if (offered) {
            fill(desktop, offered.value());
        } else if (whyNot.empty()) {
            whyNot = offered.error().message;
        }
    }
    const std::string noClicks = std::string(inputCannotBePosted) + (whyNot.empty() ? "nothing here does it." : whyNot);
    explain(desktop.clicks, noClicks, noClicks);
    explain(desktop.trust, nobodyToAsk, {});
    explain(desktop.pointer, "Nothing here tells where the pointer is.",
            "The pointer's position is not known here, so the still-mouse rule never lets a click through.");
    explain(desktop.hotKeys, "Nothing here registers hotkeys.", "The global hotkey does not work here.");
    // What is bound by others on Wayland may be refused, and come and go.
    if (!desktop.hotKeys.part || isWayland(environment)) {
        desktop.hotkeyAdvice = hotkeyAdvice(environment, [&]() -> std::optional<std::string> {
            const auto compositor = setValue(environment, "WAYLAND_DISPLAY");
            return compositor && backends.compositorProgram ? backends.compositorProgram(*compositor) : std::nullopt;
        });
    }
    explain(desktop.keyCharacters, "Nothing here tells the keyboard's layout.", {});
    return desktop;
}

} // namespace velloran
