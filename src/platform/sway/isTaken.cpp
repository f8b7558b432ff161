#include "platform/sway/isTaken.h"

#include "keys/KeyboardLayout.h"
#include "platform/sway/combination.h"

#include <algorithm>
#include <string>

namespace velloran::platform::sway {

bool isTaken(std::uint32_t evdevCode, std::uint32_t modifiers, const std::vector<UserBinding>& bindings,
             const keys::KeyboardLayout* layout) {
    const auto byDefault = keys::KeyboardLayout::fromNames({});
    if (layout == nullptr && byDefault) {
        layout = &byDefault.value();
    }
    const auto symbols =
        layout != nullptr ? layout->symbolsOfPress(evdevCode, modifiers) : std::vector<keys::PressedSymbol>();
    const std::string code = std::to_string(evdevCode + keyCodeOffset);
    return std::any_of(bindings.begin(), bindings.end(), [&](const UserBinding& binding) {
        if (binding.isByCode) {
            return binding.key == code && binding.modifiers == modifiers;
        }
        const auto symbol = keys::symbolNamed(binding.key);
        return symbol && std::find(symbols.begin(), symbols.end(), keys::PressedSymbol{*symbol, binding.modifiers}) !=
                             symbols.end();
    });
}

} // namespace velloran::platform::sway
