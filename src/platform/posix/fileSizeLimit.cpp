#include "platform/posix/fileSizeLimit.h"

#include <signal.h>

namespace velloran::platform::posix {

namespace {

extern "C" void ignoreSignal(int) {}

} // namespace

// A handler, because what is ignored stays ignored in programs that are started.
void outliveFileSizeLimit() {
    struct sigaction action {};

    action.sa_handler = ignoreSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &action, nullptr);
}

} // namespace velloran::platform::posix
