#include "platform/posix/descriptorLimit.h"

#include <sys/resource.h>

namespace velloran::platform::posix {

namespace {

/// A window with a dialog, a sound and the desktop's portal have some thirty.
constexpr rlim_t enough = 64;

} // namespace

bool allowEnoughDescriptors() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough) {
        return true;
    }
    limit.rlim_cur = enough;
    return limit.rlim_max >= enough && setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

} // namespace velloran::platform::posix
