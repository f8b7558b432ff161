#pragma once

#include <string>

namespace velloran {

/// Raw bytes, of a stored value or a file. A `std::string` because the JSON library reads and writes one.
using Bytes = std::string;

} // namespace velloran
