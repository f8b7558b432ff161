#include "async/startThread.h"

#include <pthread.h>

#include <csignal>
#include <system_error>
#include <utility>

namespace velloran {

namespace {

constexpr std::size_t threadNameLength = 15;

} // namespace

std::thread startThread(const std::string& label, std::function<void()> work) {
    // A new thread starts with the mask of the one that makes it.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread([work = std::move(work), name = label.substr(0, threadNameLength)] {
            pthread_setname_np(pthread_self(), name.c_str());
            work();
        });
    } catch (const std::system_error&) {
        // The caller sees it by the thread that cannot be joined.
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace velloran
