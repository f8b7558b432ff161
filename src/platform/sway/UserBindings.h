#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velloran::platform::sway {

/// A file of the user's configuration.
struct ConfigurationFile {
    std::string path;
    std::string text;
};

/// A combination that the user has bound.
struct UserBinding {
    /// In the order in which keymaps count them: Shift, Lock, Control, Mod1 to Mod5.
    std::uint32_t modifiers = 0;
    /// The name of a symbol, or the number of a key, as bindings name them.
    std::string key;
    bool isByCode = false;

    friend bool operator==(const UserBinding&, const UserBinding&) = default;
};

/// Finds the files that an `include` in `folder` names, by its words as they stand with all variables put in.
using FindIncluded = std::function<std::vector<ConfigurationFile>(const std::string& words, const std::string& folder)>;

/// Which combinations a configuration binds for as long as no mode is on, by the rules of sway(5): with the files that
/// it includes, each of them once, variables, blocks and lines that go on in the next. What cannot be understood is
/// passed over, as sway does; a combination of several keys that are no modifiers is nobody's hot key.
std::vector<UserBinding> userBindings(const ConfigurationFile& main, const FindIncluded& findIncluded);

} // namespace velloran::platform::sway
