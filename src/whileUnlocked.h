#pragma once

#include "platform/InputTrust.h"

#include <memory>
#include <string>

namespace velloran {

/// That permission while the screen is not locked, as far as the desktop on this session bus or the login manager tells
/// of a lock; without a session bus it is the login manager alone. Needs the application object. Main thread.
std::shared_ptr<platform::InputTrust> whileUnlocked(std::shared_ptr<platform::InputTrust> trust,
                                                    const std::string& sessionBus);

} // namespace velloran
