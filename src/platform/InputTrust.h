#pragma once

#include <functional>

namespace velloran::platform {

/// Why the user is to be asked for the permission.
enum class PromptReason {
    /// The program has come up without it. Nobody asked for that, so what was refused before is not asked for again.
    automatic,
    /// The user wants to click: pressed the button that grants the permission, or had a start refused.
    askedFor,
};

/// Whether this program may post synthetic input, and how the user is asked for it. Main thread.
class InputTrust {
public:
    InputTrust() = default;
    InputTrust(const InputTrust&) = delete;
    InputTrust& operator=(const InputTrust&) = delete;
    virtual ~InputTrust() = default;

    /// Whether synthetic input may be posted now. Answers at once.
    virtual bool isTrusted() = 0;

    /// Has the system ask the user, or shows the user where to grant the permission, as far as it can. A question that
    /// is open already is not asked twice. Returns at once with the state at the time of asking.
    virtual bool requestPrompt(PromptReason reason) = 0;

    /// `changed` is called in a turn of the main loop whenever the answer of `isTrusted` may have changed; it may be
    /// the same as before. An empty function ends that.
    virtual void onChanged(std::function<void()> changed) = 0;
};

} // namespace velloran::platform
