#pragma once

#include "platform/HotKeys.h"
#include "platform/InputTrust.h"
#include "platform/PointerEvents.h"
#include "platform/PointerPosition.h"
#include "platform/SystemLog.h"

#include <memory>
#include <string>

namespace velloran::platform::unavailable {

/// The input side of a session in which no input can be posted: there is no trust and none to be had, the pointer is
/// nowhere, no mouse event can be made, and no key combination registered. The first question for trust writes the
/// reason to the log.
class UnavailablePlatform {
public:
    /// `reason` is the line for the log. `log` must outlive this object.
    UnavailablePlatform(SystemLog& log, std::string reason);
    UnavailablePlatform(const UnavailablePlatform&) = delete;
    UnavailablePlatform& operator=(const UnavailablePlatform&) = delete;
    ~UnavailablePlatform();

    /// The parts belong to this object.
    [[nodiscard]] PointerEvents& pointerEvents();
    [[nodiscard]] PointerPosition& pointerPosition();
    [[nodiscard]] InputTrust& inputTrust();
    [[nodiscard]] HotKeys& hotKeys();

private:
    std::unique_ptr<PointerEvents> pointerEvents_;
    std::unique_ptr<PointerPosition> pointerPosition_;
    std::unique_ptr<InputTrust> inputTrust_;
    std::unique_ptr<HotKeys> hotKeys_;
};

} // namespace velloran::platform::unavailable
