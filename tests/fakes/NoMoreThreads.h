#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>

namespace velloran::fakes {

/// While it exists the system grants no thread: each would need more room than there is.
class NoMoreThreads {
public:
    NoMoreThreads() {
        pthread_getattr_default_np(&before_);
        pthread_attr_t boundless = before_;
        EXPECT_EQ(pthread_attr_setstacksize(&boundless, std::size_t{1} << 60U), 0);
        EXPECT_EQ(pthread_setattr_default_np(&boundless), 0);
    }

    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;

    ~NoMoreThreads() { pthread_setattr_default_np(&before_); }

private:
    pthread_attr_t before_{};
};

} // namespace velloran::fakes
