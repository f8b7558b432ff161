#include "base/fatal.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace velloran {

void fatalError(std::string_view message) {
    // One write, so that the line stays whole even when another thread prints at the same time.
    const std::string line = "Fatal error: " + std::string(message) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    std::abort();
}

} // namespace velloran
