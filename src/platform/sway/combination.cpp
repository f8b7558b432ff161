#include "platform/sway/combination.h"

#include "platform/HotKeys.h"

#include <array>
#include <string_view>
#include <utility>

namespace velloran::platform::sway {

std::uint32_t keymapModifiers(std::uint32_t modifiers) {
    constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 4> bits{{{shiftModifier, 1U << 0U},
                                                                           {controlModifier, 1U << 2U},
                                                                           {optionModifier, 1U << 3U},
                                                                           {commandModifier, 1U << 6U}}};
    std::uint32_t result = 0;
    for (const auto& [ours, theirs] : bits) {
        result |= (modifiers & ours) != 0 ? theirs : 0;
    }
    return result;
}

std::string combinationText(std::uint32_t modifiers, std::uint32_t evdevCode) {
    constexpr std::array<std::pair<std::uint32_t, std::string_view>, 4> names{{{controlModifier, "Control+"},
                                                                               {optionModifier, "Mod1+"},
                                                                               {shiftModifier, "Shift+"},
                                                                               {commandModifier, "Mod4+"}}};
    std::string text;
    for (const auto& [bit, name] : names) {
        if ((modifiers & bit) != 0) {
            text += name;
        }
    }
    return text + std::to_string(evdevCode + keyCodeOffset);
}

} // namespace velloran::platform::sway
