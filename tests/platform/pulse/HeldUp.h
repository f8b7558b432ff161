#pragma once

#include <sys/types.h>

#include <chrono>

namespace velloran::tests {

/// How long the threads of a process have had to wait for a processor since they started, all together. Zero where the
/// system does not count that.
std::chrono::nanoseconds heldUp(pid_t process);

} // namespace velloran::tests
