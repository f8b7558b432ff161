#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloran::platform::gnome {

// Values of the desktop's settings, in the form in which its own tool prints and reads them. Whatever is not exactly
// such a value is none: what is not understood must not be written back.

/// A text: 'it', or "it".
std::optional<std::string> readText(std::string_view written);

/// A list of texts: ['a', 'b'], or @as [].
std::optional<std::vector<std::string>> readTextList(std::string_view written);

/// Reads back as the same.
std::string writeText(std::string_view text);

/// Reads back as the same.
std::string writeTextList(const std::vector<std::string>& texts);

} // namespace velloran::platform::gnome
