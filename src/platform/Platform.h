#pragma once

#include "async/Published.h"
#include "platform/Desktop.h"

namespace velloran {
class EventLoop;
}

namespace velloran::platform {

class SystemLog;

/// What is there once in the process, for those whom nobody can hand it: static operations, shared instances, and what
/// the views make. All of it belongs to whoever put it together and outlives the installation. Main thread.
struct Platform {
    EventLoop& mainLoop;
    const Published<Desktop>& desktop;
    SystemLog& systemLog;

    /// The installed one. Asking while none is installed is a fatal error.
    static const Platform& current();
};

/// Makes one platform the process-wide one for as long as this object exists. Only one at a time.
class PlatformInstallation {
public:
    explicit PlatformInstallation(const Platform& platform);
    PlatformInstallation(const PlatformInstallation&) = delete;
    PlatformInstallation& operator=(const PlatformInstallation&) = delete;
    ~PlatformInstallation();

private:
    Platform platform_;
};

} // namespace velloran::platform
