// Part of the test program in coverage builds only: a process that ends by a fatal error writes its counts first, so
// that death tests count.

#include <csignal>

// The compiler's header does not say by itself that its functions are C.
extern "C" {
#include <gcov.h>
}

namespace {

extern "C" void dumpCounts(int signal) {
    __gcov_dump();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

[[maybe_unused]] const auto previousHandler = std::signal(SIGABRT, dumpCounts);

} // namespace
