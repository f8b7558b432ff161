#pragma once

namespace velloran {
class EventLoop;
}

namespace velloran::platform {

class HotKeys;
class InputTrust;
class PointerEvents;
class PointerPosition;
class SystemLog;

/// Everything the logic needs of the desktop. The parts belong to whoever put them together and outlive the
/// installation.
struct Platform {
    EventLoop& mainLoop;
    PointerEvents& pointerEvents;
    PointerPosition& pointerPosition;
    InputTrust& inputTrust;
    HotKeys& hotKeys;
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
