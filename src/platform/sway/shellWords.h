#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloran::platform::sway {

/// The environment of a program: values by their names.
using Variables = std::map<std::string, std::string>;

/// A word that may stand for the names of files.
struct ShellWord {
    /// For glob(3).
    std::string pattern;
    /// What it is where that fits nothing.
    std::string text;

    friend bool operator==(const ShellWord&, const ShellWord&) = default;
};

/// The pattern that fits just that text.
std::string literalPattern(std::string_view text);

/// Parts a line into words as a shell does: with quotes, backslashes, `~` and variables, also `${NAME:-else}` and the
/// like. Reads nothing but `variables`. Nothing where the line is none, or only who runs commands, computes, cuts
/// values or is that shell itself knows what it gives; of other users' folders nothing is known, `~other` stays as it
/// is.
std::optional<std::vector<ShellWord>> expandShellWords(std::string_view line, const Variables& variables);

} // namespace velloran::platform::sway
