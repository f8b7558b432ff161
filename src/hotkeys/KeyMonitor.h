#pragma once

#include "async/Subscription.h"
#include "hotkeys/KeyEvent.h"

#include <functional>

namespace velloran {

/// Sees every key press inside this program before anything else does, and keeps it from the rest. Main thread.
class KeyMonitor {
public:
    using Handler = std::function<void(const KeyEvent&)>;

    KeyMonitor() = default;
    KeyMonitor(const KeyMonitor&) = delete;
    KeyMonitor& operator=(const KeyMonitor&) = delete;
    virtual ~KeyMonitor() = default;

    /// Until the result goes away, key presses reach `handler` and nobody else. Presses of bare modifiers are not key
    /// presses. The handler may end the monitoring. One handler at a time: a later one takes the place of the earlier.
    virtual Subscription installKeyDownMonitor(Handler handler) = 0;
};

} // namespace velloran
