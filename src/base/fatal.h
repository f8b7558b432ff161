#pragma once

#include <string_view>

namespace velloran {

/// Prints "Fatal error: <message>" to standard error and aborts the process. For programming errors and for arithmetic
/// that has no meaningful result; never for bad input.
[[noreturn]] void fatalError(std::string_view message);

} // namespace velloran
