#pragma once

namespace velloran::platform::posix {

/// Makes sure that this process may have as many descriptors open as the program can need, by its own limit, which is
/// raised where that is allowed. False where it is not: libraries would wait for ever for a descriptor that the system
/// refused.
[[nodiscard]] bool allowEnoughDescriptors();

} // namespace velloran::platform::posix
