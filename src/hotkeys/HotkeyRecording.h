#pragma once

#include "async/Subscription.h"
#include "hotkeys/HotkeyCombo.h"
#include "hotkeys/KeyMonitor.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace velloran {

/// Waits for the user to press the keys of a new shortcut. Main thread.
class HotkeyRecording {
public:
    /// The key that cancels; it can never be part of a shortcut.
    static constexpr std::uint16_t escapeKeyCode = 53;

    /// `record` receives each accepted combination, while the recording still goes on; `changed` is called after every
    /// change of `isRecording`. Neither is called by the destructor. The monitor outlives this object.
    HotkeyRecording(KeyMonitor& monitor, std::function<void(const HotkeyCombo&)> record, std::function<void()> changed);
    HotkeyRecording(const HotkeyRecording&) = delete;
    HotkeyRecording& operator=(const HotkeyRecording&) = delete;
    ~HotkeyRecording() = default;

    /// Whether a key press is waited for.
    [[nodiscard]] bool isRecording() const { return isRecording_; }

    /// Starts recording, or ends it and records nothing.
    void toggleRecording();

    /// Lets go of the keyboard when the control leaves the screen. Does not touch `isRecording`.
    void stopMonitor();

private:
    void startMonitor();
    void keyDown(const KeyEvent& event);
    void setRecording(bool isRecording);

    KeyMonitor& keys_;
    std::function<void(const HotkeyCombo&)> record_;
    std::function<void()> changed_;
    bool isRecording_ = false;
    std::optional<Subscription> monitor_;
};

} // namespace velloran
