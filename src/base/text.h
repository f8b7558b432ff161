#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloran {

/// `text` without the blanks at both ends. Blanks are the horizontal ones: tab and every Unicode space separator
/// (U+0020, U+00A0, U+2003, U+3000 …), never a line break. `text` is UTF-8.
std::string trimmed(std::string_view text);

/// `text` (UTF-8) in upper case by the full Unicode rules, the same in every locale ("ß" becomes "SS", "i" becomes
/// "I").
std::string upperCased(std::string_view text);

/// Whether `text` is well-formed UTF-8.
bool isValidUtf8(std::string_view text);

/// Plain decimal digits, no grouping.
std::string decimal(std::int64_t value);

/// The shortest decimal form that reads back as the same number, always with a fraction: 3600.0, 0.01. Very large and
/// very small numbers take an exponent ("1e+300").
std::string shortestDecimal(double value);

/// The number with exactly `decimals` digits behind a full stop, rounded, in every locale.
std::string fixedDecimal(double value, int decimals);

/// Reads the whole of `text` as a real number: an optional sign, decimal digits with a full stop, an optional exponent.
/// One leading plus sign is taken. Nothing for anything else, hexadecimal included, and for numbers that are not
/// finite.
std::optional<double> parseReal(std::string_view text);

/// Reads the whole of `text` as a decimal integer with an optional sign; nothing for anything else and on overflow.
std::optional<std::int64_t> parseInteger(std::string_view text);

} // namespace velloran
