#pragma once

#include <cstdlib>
#include <memory>

namespace velloran::platform::windowmanager {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// What the server answered; empty after an error.
template<class Reply>
using XcbReply = std::unique_ptr<Reply, FreeMemory>;

} // namespace velloran::platform::windowmanager
