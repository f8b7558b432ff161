#pragma once

#include "platform/PointerEvents.h"
#include "platform/x11/XcbHandles.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velloran::platform::x11 {

/// Which physical button plays which role: the user may have swapped them. Synthetic events name the physical one.
class ButtonMapping {
public:
    /// `roles[i]` is what physical button i + 1 plays (1 left, 2 middle, 3 right, 0 nothing).
    explicit ButtonMapping(std::vector<std::uint8_t> roles) : roles_(std::move(roles)) {}

    /// Asks the server; without an answer no button plays anything.
    static ButtonMapping read(xcb_connection_t* connection);

    /// The first physical button that plays `button`; nothing when none does.
    [[nodiscard]] std::optional<std::uint8_t> physicalButton(EventButton button) const;

private:
    std::vector<std::uint8_t> roles_;
};

} // namespace velloran::platform::x11
