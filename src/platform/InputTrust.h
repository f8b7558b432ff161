#pragma once

#include <functional>

namespace velloran::platform {

/// Whether this program may post synthetic input, and how the user is asked for it. Main thread.
class InputTrust {
public:
    InputTrust() = default;
    InputTrust(const InputTrust&) = delete;
    InputTrust& operator=(const InputTrust&) = delete;
    virtual ~InputTrust() = default;

    /// Whether synthetic input may be posted now. Answers at once.
    virtual bool isTrusted() = 0;

    /// Has the system ask the user, where it can. Returns at once with the state at the time of asking.
    virtual bool requestPrompt() = 0;

    /// Opens the place where the user grants the permission, where there is one.
    virtual void openSettings() = 0;

    /// `changed` is called in a turn of the main loop whenever the answer of `isTrusted` may have changed; an empty
    /// function ends that.
    virtual void onChanged(std::function<void()> changed) = 0;
};

} // namespace velloran::platform
