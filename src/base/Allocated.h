#pragma once

#include <cstdlib>
#include <memory>

namespace velloran {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// What a C library has allocated and leaves to its caller to free. Null when there is nothing.
template<typename T>
using Allocated = std::unique_ptr<T, FreeMemory>;

} // namespace velloran
