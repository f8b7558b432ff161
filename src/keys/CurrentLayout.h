#pragma once

#include "keys/KeyboardLayout.h"

#include <functional>
#include <type_traits>

namespace velloran::keys {

/// The layout of the user's keyboard, as far as it is known; null where it is not. May be empty.
using CurrentLayout = std::function<const KeyboardLayout*()>;

/// What `made` makes of the layout, of the system's default where none is known. A value of its own where there is not
/// even that.
template<typename Make>
std::invoke_result_t<Make, const KeyboardLayout&> fromLayout(const CurrentLayout& current, Make&& made) {
    if (const KeyboardLayout* const layout = current ? current() : nullptr) {
        return made(*layout);
    }
    const auto byDefault = KeyboardLayout::fromNames({});
    return byDefault ? made(byDefault.value()) : std::invoke_result_t<Make, const KeyboardLayout&>();
}

} // namespace velloran::keys
