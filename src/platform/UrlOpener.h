#pragma once

#include <string>

namespace velloran::platform {

/// Hands addresses to the user's default programs. Main thread.
class UrlOpener {
public:
    UrlOpener() = default;
    UrlOpener(const UrlOpener&) = delete;
    UrlOpener& operator=(const UrlOpener&) = delete;
    virtual ~UrlOpener() = default;

    /// Has the desktop open `url`; returns without waiting for it. Failures are silent.
    virtual void open(const std::string& url) = 0;
};

} // namespace velloran::platform
