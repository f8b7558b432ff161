#pragma once

#include "platform/Desktop.h"

#include <QString>

#include <chrono>
#include <memory>
#include <string>

namespace velloran::platform::portal {

inline constexpr auto notAnswered = "Input cannot be posted: the desktop's portal has not answered.";
inline constexpr auto noPortal = "Input cannot be posted: the desktop's portal has ended.";
inline constexpr auto noInterface = "Input cannot be posted: the desktop's portal offers no remote control.";

/// From this version of the interface on the desktop can remember a permission.
inline constexpr uint firstThatRemembers = 2;

/// For everything that needs no user.
inline constexpr std::chrono::seconds longestWaitWithoutUser{30};

/// What the desktop does without the portal's remote control, and what there is to say about that.
Desktop withoutRemoteControl(const std::string& why);

/// And with it, in that version of the interface. `nameError` is why the portal does not know the program by its name;
/// empty where it does.
Desktop withRemoteControl(std::shared_ptr<PointerEvents> events, std::shared_ptr<InputTrust> trust, uint version,
                          const QString& nameError);

} // namespace velloran::platform::portal
