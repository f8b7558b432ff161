#pragma once

#include "async/Subscription.h"

#include <functional>
#include <string>

namespace velloran::platform {

/// Asks the user before a hotkey goes among what is the user's own on this desktop. Main thread.
class HotkeyConsent {
public:
    using Answered = std::function<void(bool agreed)>;

    HotkeyConsent() = default;
    HotkeyConsent(const HotkeyConsent&) = delete;
    HotkeyConsent& operator=(const HotkeyConsent&) = delete;
    virtual ~HotkeyConsent() = default;

    /// Asks for the shortcut of these words, in place of whatever it was asking for. `answered` is called once, from
    /// inside this call where the answer is known; not any more once the result is gone, with which the question goes.
    [[nodiscard]] virtual Subscription ask(const std::string& shortcut, Answered answered) = 0;
};

} // namespace velloran::platform
