#pragma once

#include <cstdint>
#include <string>

namespace velloran::keys {

/// A readable name, never empty, for a key that gives no text: by its place where that says more than the layout does
/// (F13, keypad), else by its key symbol.
std::string nameOfKey(std::uint32_t evdevCode, std::uint32_t keySymbol);

/// Whether the key symbol is that of a modifier or lock key, which is no key of its own in a shortcut.
bool isModifierSymbol(std::uint32_t keySymbol);

/// Whether the key symbol is that of a dead key, which waits for the next key to give text.
bool isDeadSymbol(std::uint32_t keySymbol);

} // namespace velloran::keys
