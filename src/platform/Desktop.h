#pragma once

#include <memory>
#include <string>

namespace velloran::platform {

class HotKeys;
class InputTrust;
class KeyCharacters;
class PointerEvents;
class PointerPosition;

/// One thing that a desktop does for the program: who does it, and what there is to say about that.
template<typename Interface>
struct DesktopPart {
    /// Null where nothing does it. Shared with whoever uses it; ends on the main thread.
    std::shared_ptr<Interface> part;
    /// Why this one was chosen, or why there is none, in one sentence.
    std::string reason;
    /// What the user has to do without, in one sentence; empty where nothing is missing.
    std::string limit;
    /// Whether somebody who may do it has not answered yet: then nothing is decided by there being no part.
    bool isAwaited = false;

    friend bool operator==(const DesktopPart&, const DesktopPart&) = default;
};

/// How the user can have a key start and stop the program where it cannot have one itself.
struct HotkeyAdvice {
    /// Where to put it; empty where that is not known.
    std::string place;
    /// What to put there; empty where no advice is ever needed.
    std::string line;

    friend bool operator==(const HotkeyAdvice&, const HotkeyAdvice&) = default;
};

/// What the desktop does for the program. Each part stands for itself and may be missing; what that means is decided
/// where the part is used. A value: kept as a `Published` one, because parts may come late, go, and come back. Main
/// thread.
struct Desktop {
    DesktopPart<PointerEvents> clicks;
    /// The permission to post those clicks: it comes and goes with them.
    DesktopPart<InputTrust> trust;
    DesktopPart<PointerPosition> pointer;
    DesktopPart<HotKeys> hotKeys;
    DesktopPart<KeyCharacters> keyCharacters;
    /// For as long as there are no hot keys, or the one that is wanted cannot be had.
    HotkeyAdvice hotkeyAdvice;

    friend bool operator==(const Desktop&, const Desktop&) = default;
};

} // namespace velloran::platform
