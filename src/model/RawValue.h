#pragma once

#include <optional>
#include <string_view>

namespace velloran {

/// The enumerator with that stored name; nothing when the text names none. Specialised for every stored enumeration.
template<typename Enumeration>
std::optional<Enumeration> fromRawValue(std::string_view text);

} // namespace velloran
